// The core's work between the start of the program and the first request.
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "app/PageScripts.h"
#include "fakes/FakeResources.h"
#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"
#include "support/Url.h"

namespace navora {
namespace {

constexpr const char* originText = "https://navora.example/";
constexpr const char* pageText = "https://navora.example/circles/42/today?day=2024-05-17#latest";

std::string resource(const std::string& name) {
  std::ifstream file(std::string(NAVORA_RESOURCES) + "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void urlParse(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(Url::parse(pageText));
}
BENCHMARK(urlParse);

void originContains(benchmark::State& state) {
  const Url origin = *Url::parse(originText);
  const Url page = *Url::parse(pageText);
  for (auto _ : state)
    benchmark::DoNotOptimize(DesktopOrigin::contains(page, origin));
}
BENCHMARK(originContains);

void catalogLoadAndFirstTranslation(benchmark::State& state) {
  const std::string catalog = resource("i18n-catalog.json");
  if (catalog.empty()) {
    state.SkipWithError("The catalog cannot be read");
    return;
  }
  for (auto _ : state) {
    DesktopLocale::configure([] { return std::vector<std::string>{"de"}; },
                             [&] { return std::optional(catalog); });
    benchmark::DoNotOptimize(DesktopLocale::translate("Навора"));
  }
}
BENCHMARK(catalogLoadAndFirstTranslation)->Unit(benchmark::kMicrosecond);

void laterTranslation(benchmark::State& state) {
  const std::string catalog = resource("i18n-catalog.json");
  DesktopLocale::configure([] { return std::vector<std::string>{"de"}; },
                           [&] { return std::optional(catalog); });
  DesktopLocale::translate("Навора");
  for (auto _ : state)
    benchmark::DoNotOptimize(DesktopLocale::translate("Навора"));
}
BENCHMARK(laterTranslation);

void pageScripts(benchmark::State& state) {
  FakeResources resources;
  for (const char* name : {"CaptureAppearance", "RestartGuard"}) {
    if (auto script = resource(std::string(name) + ".js"); !script.empty()) {
      resources.put(name, "js", std::move(script));
    }
  }
  const Url origin = *Url::parse(originText);
  for (auto _ : state)
    benchmark::DoNotOptimize(PageScripts::userScripts(origin, "Europe/Berlin", resources));
}
BENCHMARK(pageScripts)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace navora
