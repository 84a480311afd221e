#include "app/PageScripts.h"

#include <optional>
#include <utility>

#include "app/DesktopTimeZone.h"
#include "support/Json.h"

namespace navora {
namespace {

using InjectionTime = UserScript::InjectionTime;

// Reports the user's language setting now, when the page says that it saved one and whenever the
// window gets the focus. Answers that a newer question has overtaken are dropped.
constexpr std::string_view settingsSynchronization = R"((() => {
  let generation = 0;
  async function sync() {
    const requestGeneration = ++generation;
    try {
      const response = await fetch('/api/settings', {credentials:'same-origin', cache:'no-store'});
      if (requestGeneration !== generation) return;
      if (!response.ok) { window.webkit.messageHandlers.navoraLocale.postMessage({requestedLocale:'system',detectedLocale:null}); return; }
      const data = await response.json();
      if (requestGeneration !== generation) return;
      window.webkit.messageHandlers.navoraLocale.postMessage({requestedLocale:data.settings?.locale || 'system',detectedLocale:data.settings?.detectedLocale || null});
    } catch {}
  }
  sync(); window.addEventListener('tolvin:localesaved', sync);
  window.addEventListener('tolvin:timezonesaved', sync);
  window.addEventListener('focus', sync);
})();)";

constexpr std::string_view timeZoneDetection =
    "window.webkit.messageHandlers.navoraTimeZoneDetection.postMessage({});";

}  // namespace

std::vector<UserScript> PageScripts::userScripts(const Url& origin,
                                                 std::string_view timeZoneIdentifier,
                                                 const Resources& resources) {
  const std::string timeZone =
      DesktopTimeZone::script(timeZoneIdentifier) + " " + std::string(timeZoneDetection);

  std::vector<UserScript> scripts;
  scripts.push_back({guarded(origin, timeZone), InjectionTime::documentStart});
  scripts.push_back({std::string(settingsSynchronization), InjectionTime::documentEnd});
  if (const auto appearance = resources.read("CaptureAppearance", "js")) {
    scripts.push_back({guarded(origin, *appearance), InjectionTime::documentEnd});
  }
  if (auto guard = resources.read("RestartGuard", "js")) {
    scripts.push_back({*std::move(guard), InjectionTime::documentStart});
  }
  return scripts;
}

std::string PageScripts::guarded(const Url& origin, std::string_view body) {
  return "if (window.location.origin === new URL(" + jsonStringLiteral(origin.string()) +
         ").origin) { " + std::string(body) + " }";
}

}  // namespace navora
