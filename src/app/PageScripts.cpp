#include "app/PageScripts.h"

#include <optional>
#include <utility>

#include "app/DesktopTimeZone.h"
#include "app/PageMessages.h"
#include "support/Json.h"
#include "support/Text.h"

namespace navora {
namespace {

using InjectionTime = UserScript::InjectionTime;

// Reports the user's language setting when the page loads, when the page has saved a setting and
// when the window gets the focus. Replies superseded by a newer request are discarded.
constexpr std::string_view settingsSynchronizationTemplate = R"((() => {
  let generation = 0;
  async function sync() {
    const requestGeneration = ++generation;
    try {
      const response = await fetch('/api/settings', {credentials:'same-origin', cache:'no-store'});
      if (requestGeneration !== generation) return;
      if (!response.ok) { window.webkit.messageHandlers.{handler}.postMessage({requestedLocale:'system',detectedLocale:null}); return; }
      const data = await response.json();
      if (requestGeneration !== generation) return;
      window.webkit.messageHandlers.{handler}.postMessage({requestedLocale:data.settings?.locale || 'system',detectedLocale:data.settings?.detectedLocale || null});
    } catch {}
  }
  sync(); window.addEventListener('tolvin:localesaved', sync);
  window.addEventListener('tolvin:timezonesaved', sync);
  window.addEventListener('focus', sync);
})();)";

std::string settingsSynchronization() {
  return replaceAll(settingsSynchronizationTemplate, "{handler}", PageMessages::locale);
}

std::string timeZonePublication(std::string_view timeZoneIdentifier) {
  return DesktopTimeZone::script(timeZoneIdentifier) + " window.webkit.messageHandlers." +
         std::string(PageMessages::timeZoneDetection) + ".postMessage({});";
}

}  // namespace

std::vector<UserScript> PageScripts::userScripts(const Url& origin,
                                                 std::string_view timeZoneIdentifier,
                                                 const Resources& resources) {
  std::vector<UserScript> scripts;
  scripts.push_back(
      {guarded(origin, timeZonePublication(timeZoneIdentifier)), InjectionTime::documentStart});
  scripts.push_back({settingsSynchronization(), InjectionTime::documentEnd});
  if (const auto appearance = resources.read("CaptureAppearance", "js"))
    scripts.push_back({guarded(origin, *appearance), InjectionTime::documentEnd});
  if (auto guard = resources.read("RestartGuard", "js"))
    scripts.push_back({*std::move(guard), InjectionTime::documentStart});
  return scripts;
}

std::string PageScripts::guarded(const Url& origin, std::string_view body) {
  return "if (window.location.origin === new URL(" + jsonStringLiteral(origin.string()) +
         ").origin) { " + std::string(body) + " }";
}

}  // namespace navora
