#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/PageScripts.h"
#include "fakes/FakeResources.h"
#include "fakes/TestUrl.h"

namespace navora {
namespace {

using InjectionTime = UserScript::InjectionTime;
using testing::ElementsAre;
using testing::SizeIs;

constexpr const char* timeZoneScript =
    "if (window.location.origin === new URL(\"https://navora.example\").origin) { "
    "window.NavoraSystemTimeZone = \"Europe/Moscow\"; "
    "window.dispatchEvent(new CustomEvent('tolvin:systemtimezonechange')); "
    "window.webkit.messageHandlers.navoraTimeZoneDetection.postMessage({}); }";

constexpr const char* synchronizationScript =
    "(() => {\n"
    "  let generation = 0;\n"
    "  async function sync() {\n"
    "    const requestGeneration = ++generation;\n"
    "    try {\n"
    "      const response = await fetch('/api/settings', {credentials:'same-origin', "
    "cache:'no-store'});\n"
    "      if (requestGeneration !== generation) return;\n"
    "      if (!response.ok) { window.webkit.messageHandlers.navoraLocale.postMessage("
    "{requestedLocale:'system',detectedLocale:null}); return; }\n"
    "      const data = await response.json();\n"
    "      if (requestGeneration !== generation) return;\n"
    "      window.webkit.messageHandlers.navoraLocale.postMessage({requestedLocale:"
    "data.settings?.locale || 'system',detectedLocale:data.settings?.detectedLocale || null});\n"
    "    } catch {}\n"
    "  }\n"
    "  sync(); window.addEventListener('tolvin:localesaved', sync);\n"
    "  window.addEventListener('tolvin:timezonesaved', sync);\n"
    "  window.addEventListener('focus', sync);\n"
    "})();";

class PageScriptsTest : public testing::Test {
 protected:
  std::vector<UserScript> scripts() const {
    return PageScripts::userScripts(testUrl("https://navora.example"), "Europe/Moscow", resources_);
  }

  FakeResources resources_;
};

TEST_F(PageScriptsTest, AreInOrderWithTheirInjectionTimes) {
  resources_.put("CaptureAppearance", "js", "appearance();");
  resources_.put("RestartGuard", "js", "guard();\n");
  EXPECT_THAT(
      scripts(),
      ElementsAre(
          UserScript{timeZoneScript, InjectionTime::documentStart},
          UserScript{synchronizationScript, InjectionTime::documentEnd},
          UserScript{"if (window.location.origin === new URL(\"https://navora.example\").origin) "
                     "{ appearance(); }",
                     InjectionTime::documentEnd},
          UserScript{"guard();\n", InjectionTime::documentStart}));
}

TEST_F(PageScriptsTest, OmitAMissingAppearanceScript) {
  resources_.put("RestartGuard", "js", "guard();");
  ASSERT_THAT(scripts(), SizeIs(3));
  EXPECT_EQ(scripts()[2].source, "guard();");
}

TEST_F(PageScriptsTest, OmitAMissingRestartGuard) {
  resources_.put("CaptureAppearance", "js", "appearance();");
  ASSERT_THAT(scripts(), SizeIs(3));
  EXPECT_EQ(scripts()[2].injectionTime, InjectionTime::documentEnd);
}

TEST_F(PageScriptsTest, OmitResourcesThatAreNotText) {
  resources_.put("CaptureAppearance", "js", "\xFF");
  resources_.put("RestartGuard", "js", "\xFF");
  EXPECT_THAT(scripts(), SizeIs(2));
}

TEST_F(PageScriptsTest, ReadTheirResourcesByNameAndExtension) {
  resources_.put("CaptureAppearance", "json", "no");
  resources_.put("captureappearance", "js", "no");
  resources_.put("RestartGuard", "txt", "no");
  EXPECT_THAT(scripts(), SizeIs(2));
}

TEST_F(PageScriptsTest, QuoteTheTimeZone) {
  const auto scripts =
      PageScripts::userScripts(testUrl("https://navora.example"), "a\"b", resources_);
  EXPECT_THAT(scripts.front().source,
              testing::HasSubstr("window.NavoraSystemTimeZone = \"a\\\"b\";"));
}

TEST(PageScriptsGuard, NamesTheOriginWithItsPort) {
  EXPECT_EQ(PageScripts::guarded(testUrl("http://127.0.0.1:8878/"), "body();"),
            "if (window.location.origin === new URL(\"http://127.0.0.1:8878/\").origin) "
            "{ body(); }");
}

TEST(PageScriptsGuard, KeepsTheBodyUnchanged) {
  EXPECT_EQ(PageScripts::guarded(testUrl("https://navora.example"), "// \"a\"\n"),
            "if (window.location.origin === new URL(\"https://navora.example\").origin) "
            "{ // \"a\"\n }");
}

}  // namespace
}  // namespace navora
