// navora-update-simulator: shows the update banner in each of its states on the real window, so
// that its texts, layout and colours can be looked at without an update.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <gtkmm/application.h>

#include "UpdateSimulator.h"
#include "hosts/linux/system/LinuxResources.h"
#include "locale/DesktopLocale.h"

namespace {

constexpr int usageError = 2;
constexpr const char* help =
    "Usage: navora-update-simulator [OPTION]...\n"
    "Shows the update banner in each of its states. The arrow keys change the state.\n"
    "\n"
    "  --state NAME    Begin with this state.\n"
    "  --language TAG  The interface's language: ru, en, es, pt-BR, de, fr, ja.\n"
    "  --dark          The dark appearance.\n"
    "  --list          Print the names of the states.\n"
    "  --help          Print this text.\n";

struct Options {
  std::size_t first = 0;
  std::string language = "en";
  navora::WindowAppearance appearance = navora::WindowAppearance::light;
};

std::optional<std::size_t> indexOf(const std::string& name) {
  const auto& scenarios = navora::updateBannerScenarios();
  const auto found = std::ranges::find(scenarios, name, &navora::UpdateBannerScenario::name);
  if (found == scenarios.end()) return std::nullopt;
  return static_cast<std::size_t>(found - scenarios.begin());
}

int fail(const std::string& message) {
  std::cerr << "navora-update-simulator: " << message << "; --help lists the options\n";
  return usageError;
}

int simulate(const Options& options) {
  const auto application =
      Gtk::Application::create("example.navora.UpdateSimulator", Gio::APPLICATION_NON_UNIQUE);
  const navora::LinuxResources resources;
  navora::DesktopLocale::configure([&] { return std::vector{options.language}; },
                                   [&] { return resources.read("i18n-catalog", "json"); },
                                   [&] { return resources.read("linux/i18n-catalog", "json"); });
  navora::UpdateSimulator simulator(options.appearance, options.first);
  return application->run(simulator.native());
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  Options options;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (*argument == "--help") {
      std::cout << help;
      return EXIT_SUCCESS;
    }
    if (*argument == "--list") {
      for (const auto& scenario : navora::updateBannerScenarios())
        std::cout << scenario.name << '\n';
      return EXIT_SUCCESS;
    }
    if (*argument == "--dark") {
      options.appearance = navora::WindowAppearance::dark;
      continue;
    }
    if (*argument != "--state" && *argument != "--language")
      return fail("unknown argument \"" + *argument + '"');
    const bool isState = *argument == "--state";
    if (++argument == arguments.end()) return fail("an option lacks its value");
    if (!isState) {
      options.language = *argument;
      continue;
    }
    const auto index = indexOf(*argument);
    if (!index) return fail("there is no state \"" + *argument + '"');
    options.first = *index;
  }
  return simulate(options);
}
