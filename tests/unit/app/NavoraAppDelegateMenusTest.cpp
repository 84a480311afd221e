#include <gmock/gmock.h>

#include "app/NavoraMenus.h"
#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using testing::Contains;
using testing::ElementsAre;

class NavoraAppDelegateMenusTest : public AppDelegateTest {
 protected:
  FakeStatusItem& statusItem() { return platform_.statusItem(); }
  const std::vector<MenuItem>& statusItems() { return statusItem().description().menu.items; }

  // Chooses the action in both menus and returns the events, which must be the same for both.
  std::vector<std::string> choose(DelegateAction action) {
    log().take();
    platform_.application().choose(action);
    auto events = log().take();
    statusItem().choose(action);
    EXPECT_EQ(log().take(), events);
    return events;
  }
};

TEST_F(NavoraAppDelegateMenusTest, CreatesTheMenusAndTheStatusItem) {
  launch();
  EXPECT_EQ(platform_.application().menus(), NavoraMenus::mainMenu());
  EXPECT_EQ(statusItem().description().menu, NavoraMenus::statusMenu());
  EXPECT_EQ(statusItem().description().accessibilityLabel, "Навора");
  EXPECT_EQ(statusItem().description().image->size(), (Size{18, 18}));
  EXPECT_TRUE(statusItem().description().image->isTemplate());
}

TEST_F(NavoraAppDelegateMenusTest, SaysInTheStatusMenuThatTheShortcutIsTaken) {
  platform_.hotKeys().registerStatus = -9878;
  launch();
  ASSERT_EQ(statusItems().size(), NavoraMenus::statusMenu().items.size() + 1);
  EXPECT_EQ(statusItems()[0], NavoraMenus::shortcutTaken());
}

TEST_F(NavoraAppDelegateMenusTest, SaysNothingIfNoShortcutCanBeRegisteredAtAll) {
  platform_.hotKeys().installStatus = -1;
  launch();
  EXPECT_EQ(statusItems(), NavoraMenus::statusMenu().items);
}

TEST_F(NavoraAppDelegateMenusTest, RecreatesEverythingInANewLanguage) {
  locale_.setCatalogs(
      R"({"en": {"Навора": "Navora", "Правка": "Edit", "Показать Навору": "Show"}})");
  platform_.hotKeys().registerStatus = -9878;
  launchShowing(testUrl(home));
  webView().post("navoraLocale", R"({"requestedLocale": "en"})", mainFrame(home));
  EXPECT_EQ(platform_.application().menus()[1].title, "Edit");
  EXPECT_EQ(platform_.application().menus()[2].title, "Вид");
  EXPECT_EQ(statusItem().description().accessibilityLabel, "Navora");
  EXPECT_EQ(statusItems(), NavoraMenus::statusMenu().items);
  EXPECT_EQ(statusItems()[1].title, "Show");
  EXPECT_THAT(choose(DelegateAction::showWindow), Contains("application.activate"));
}

TEST_F(NavoraAppDelegateMenusTest, ShowsTheAboutPanel) {
  launch();
  choose(DelegateAction::about);
  EXPECT_THAT(platform_.application().aboutPanels(),
              ElementsAre(NavoraMenus::about(), NavoraMenus::about()));
}

TEST_F(NavoraAppDelegateMenusTest, OpensTheCapturePanelUnlessARestartIsPrepared) {
  launch();
  prepareRestart();
  platform_.application().choose(DelegateAction::quickCapture);
  EXPECT_FALSE(platform_.capturePanel().isVisible());
  giveUpRestart();
  platform_.application().choose(DelegateAction::quickCapture);
  EXPECT_TRUE(platform_.capturePanel().isVisible());
}

TEST_F(NavoraAppDelegateMenusTest, PerformsTheOtherActions) {
  launchShowing(testUrl("https://navora.example/circles"));
  EXPECT_THAT(choose(DelegateAction::reload),
              Contains("webView.load https://navora.example/circles"));
  EXPECT_THAT(choose(DelegateAction::openInBrowser),
              ElementsAre("workspace.open https://navora.example/circles"));
  EXPECT_THAT(choose(DelegateAction::showWindow),
              ElementsAre("window.makeKeyAndOrderFront", "application.activate"));
}

TEST_F(NavoraAppDelegateMenusTest, RequestsPermissionForNotifications) {
  launch();
  choose(DelegateAction::enableNotifications);
  EXPECT_EQ(platform_.notificationCenter().requests.size(), 2U);
}

}  // namespace
}  // namespace navora
