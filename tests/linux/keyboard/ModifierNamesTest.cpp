#include <map>
#include <string>

#include <gtest/gtest.h>

#include "fakes/LocaleScope.h"
#include "hosts/linux/keyboard/ModifierNames.h"

namespace navora {
namespace {

class ModifierNamesTest : public testing::Test {
 protected:
  LocaleScope locale_;
};

TEST_F(ModifierNamesTest, AreThoseOfTheInterfaceLanguage) {
  const std::map<std::string, std::string> names{{"ru", "Ctrl+Shift+N, Ctrl+N, Ctrl, Shift"},
                                                 {"en", "Ctrl+Shift+N, Ctrl+N, Ctrl, Shift"},
                                                 {"es", "Ctrl+Mayús+N, Ctrl+N, Ctrl, Mayús"},
                                                 {"pt-BR", "Ctrl+Shift+N, Ctrl+N, Ctrl, Shift"},
                                                 {"de", "Strg+Umschalt+N, Strg+N, Strg, Umschalt"},
                                                 {"fr", "Ctrl+Maj+N, Ctrl+N, Ctrl, Maj"},
                                                 {"ja", "Ctrl+Shift+N, Ctrl+N, Ctrl, Shift"}};
  for (const std::string& language : DesktopLocale::supported()) {
    DesktopLocale::requested = language;
    EXPECT_EQ(withModifierNames("⌘⇧N, ⌘+N, ⌘, ⇧"), names.at(language)) << language;
  }
}

TEST_F(ModifierNamesTest, LeaveOtherTextAlone) {
  EXPECT_EQ(withModifierNames("Command, Shift & ⌥"), "Command, Shift & ⌥");
}

}  // namespace
}  // namespace navora
