#include <gmock/gmock.h>

#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Not;

// Messages and menu commands that arrive while the application starts: the window and the page
// exist, the quick capture, the status item, the notifications and the updates do not yet.
class NavoraAppDelegateStartingTest : public AppDelegateTest {
 protected:
  void launchPosting(const std::string& name, const std::string& body) {
    system().onObserveWake = [this, name, body] { webView().post(name, body, mainFrame(home)); };
    launch();
  }
};

TEST_F(NavoraAppDelegateStartingTest, RebuildsWhatThereIsForANewLanguage) {
  locale_.setCatalogs(R"({"en": {"Навора": "Navora"}})");
  launchPosting("navoraLocale", R"({"requestedLocale": "en"})");
  EXPECT_EQ(window().title(), "Navora");
  EXPECT_EQ(platform_.statusItem().description().accessibilityLabel, "Navora");
  // The item is made once, in its turn.
  EXPECT_THAT(log().take(),
              AllOf(Contains("statusItem.make").Times(1), Not(Contains("statusItem.destroy"))));
}

TEST_F(NavoraAppDelegateStartingTest, SetsTheWindowsAppearance) {
  const std::string body = R"({"theme": "system"})";
  launchPosting("navoraCaptureAppearance", body);
  EXPECT_TRUE(window().isVisible());
}

TEST_F(NavoraAppDelegateStartingTest, IgnoresCommandsForWhatIsMissing) {
  system().onObserveWake = [this] {
    delegate_->performMenuAction(DelegateAction::checkForUpdates);
    for (const char* command : {"enable", "disable", "test", "status"})
      webView().post("navoraNotifications", std::string(1, '"') + command + '"', mainFrame(home));
  };
  launch();
  EXPECT_TRUE(window().isVisible());
  EXPECT_THAT(log().take(), Not(Contains("updater.checkForUpdates")));
}

}  // namespace
}  // namespace navora
