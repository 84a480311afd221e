#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "end_to_end/CaptureTest.h"
#include "end_to_end/driver/FakeStatusNotifierWatcher.h"

namespace navora::driver {
namespace {

using testing::ElementsAre;

// A desktop with a status notifier watcher.
class StatusItemTest : public CaptureTest {
 protected:
  void SetUp() override {
    tray.emplace(desktop().sessionBusAddress());
    CaptureTest::SetUp();
    if (!HasFatalFailure()) item = tray->waitForItem();
  }
  void TearDown() override {
    CaptureTest::TearDown();
    tray.reset();
  }

  std::vector<std::string> labels() {
    std::vector<std::string> texts;
    for (const auto& entry : tray->menu(item))
      texts.push_back(entry.type == "separator" ? "-" : entry.label);
    return texts;
  }
  // Returns the first label of the current item's menu; empty while the item is being replaced.
  std::string newestLabel() {
    const auto items = tray->items();
    if (items.size() != 1) return {};
    item = items.front();
    try {
      return labels().front();
    } catch (const TestError&) {
      return {};
    }
  }
  void hideMainWindow() {
    desktop().display().close(application().waitForMainWindow().id);
    application().waitUntilMainWindowHidden();
  }

  std::optional<FakeStatusNotifierWatcher> tray;
  FakeStatusNotifierWatcher::Item item;
};

TEST_F(StatusItemTest, HasTheApplicationsMenuWithTheKeyNamesOfLinux) {
  EXPECT_THAT(labels(),
              ElementsAre("New Note  Ctrl+Shift+Space", "Show Navora", "Check for Updates…",
                          "Turn On Notifications…", "-", "Quit Navora"));
  EXPECT_EQ(tray->textProperty(item, "Title"), "Navora");
  EXPECT_FALSE(tray->pixmaps(item).empty());
}

TEST_F(StatusItemTest, ShowsTheHiddenWindowOnAClickAndFromItsMenu) {
  hideMainWindow();
  tray->activate(item);
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  hideMainWindow();
  tray->choose(item, "Show Navora");
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
}

TEST_F(StatusItemTest, OpensTheQuickCapture) {
  tray->choose(item, "New Note  Ctrl+Shift+Space");
  waitUntil([&] { return panel().has_value(); }, "the panel is open");
}

TEST_F(StatusItemTest, UsesTheLanguageThatTheUserChoosesOnTheService) {
  page().evaluate(
      "await fetch('/api/settings', {method: 'PUT', headers: {'Content-Type': 'application/json'},"
      " body: JSON.stringify({locale: 'de'})});"
      "window.dispatchEvent(new Event('tolvin:localesaved'))");
  waitUntil([&] { return newestLabel() == "Neue Notiz  Strg+Umschalt+Leertaste"; },
            "the tray's menu is in German");
  EXPECT_TRUE(hasWidget("menu", "Bearbeiten"));
  EXPECT_EQ(labels().back(), "Navora beenden");
}

TEST_F(StatusItemTest, RegistersWithARestartedTray) {
  tray.reset();
  tray.emplace(desktop().sessionBusAddress());
  item = tray->waitForItem();
  EXPECT_EQ(labels().size(), 6U);
}

TEST_F(StatusItemTest, QuitsTheApplication) {
  tray->choose(item, "Quit Navora");
  EXPECT_EQ(application().process().wait(), (ChildProcess::ExitStatus{0, 0}));
}

}  // namespace
}  // namespace navora::driver
