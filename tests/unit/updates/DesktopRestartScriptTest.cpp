#include <gtest/gtest.h>

#include "support/Json.h"
#include "updates/DesktopRestartScript.h"

namespace navora {
namespace {

constexpr const char* question =
    "JSON.stringify({ reason: window.NavoraUpdateGuard ? window.NavoraUpdateGuard.prepare() : ";

TEST(DesktopRestartScript, CallsTheGuardOrReturnsTheFallbackMessage) {
  EXPECT_EQ(DesktopRestartScript::prepare("Reload"), std::string(question) + "\"Reload\" })");
  EXPECT_EQ(DesktopRestartScript::prepare(""), std::string(question) + "\"\" })");
}

TEST(DesktopRestartScript, KeepsEveryMessageOneLiteral) {
  for (const char* message :
       {"Say \"now\"", "C:\\path\\", "two\nlines", "\" }); alert(1); ({ reason: \"", "Привет 👋",
        "</script>", "tab\tand\x01 control"}) {
    const auto script = DesktopRestartScript::prepare(message);
    ASSERT_TRUE(script) << message;
    ASSERT_EQ(script->find(question), 0u);
    const std::string rest = script->substr(std::string(question).size());
    ASSERT_TRUE(rest.ends_with(" })"));
    EXPECT_EQ(parseJson(rest.substr(0, rest.size() - 3)), Json(message));
  }
}

TEST(DesktopRestartScript, HasNoneForBrokenText) {
  EXPECT_FALSE(DesktopRestartScript::prepare("\xFF"));
  EXPECT_FALSE(DesktopRestartScript::prepare("half a letter \xD0"));
}

}  // namespace
}  // namespace navora
