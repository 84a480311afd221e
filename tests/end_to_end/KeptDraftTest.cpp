// The draft in the capture panel survives the application's exit, however the application exits.
#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>
#include <signal.h>

#include "end_to_end/CaptureTest.h"
#include "end_to_end/driver/FakeNotificationDaemon.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

class KeptDraftTest : public CaptureTest {
 protected:
  std::string fileContent() {
    return std::filesystem::exists(draftFile()) ? readFile(draftFile()) : std::string();
  }
  void waitUntilStored(const std::string& text) {
    waitUntil([&] { return fileContent().find(text) != std::string::npos; },
              "the draft is on the disk", defaultTimeout(), [&] { return fileContent(); });
  }
  void restart() {
    application().start();
    desktop().display().waitUntilActive(application().waitForMainWindow().id);
  }
  void expectDraftAfterRestart(const std::string& text) {
    restart();
    openPanel();
    EXPECT_EQ(draft(), text);
  }
};

TEST_F(KeptDraftTest, SurvivesAKill) {
  openPanel();
  typeDraft("Half a thought");
  waitUntilStored("Half a thought");
  EXPECT_EQ(std::filesystem::status(draftFile()).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  application().process().kill();
  expectDraftAfterRestart("Half a thought");
  desktop().keyboard().chord(sendKey);
  waitForStoredNotes({"Half a thought"});
  waitUntil([&] { return !std::filesystem::exists(draftFile()); }, "the file is deleted");
}

TEST_F(KeptDraftTest, AnEmptiedTextLeavesNothingOnTheDisk) {
  openPanel();
  typeDraft("Never mind");
  waitUntilStored("Never mind");
  desktop().keyboard().chord("Control+a");
  desktop().keyboard().chord("Delete");
  waitForDraft("");
  waitUntil([&] { return !std::filesystem::exists(draftFile()); }, "the file is deleted");
}

TEST_F(KeptDraftTest, QuitsFromThePanelWithoutAQuestion) {
  openPanel();
  typeDraft("Quit now");
  desktop().keyboard().chord("Control+q");
  EXPECT_EQ(application().process().wait(), (ChildProcess::ExitStatus{0, 0}));
  expectDraftAfterRestart("Quit now");
}

TEST_F(KeptDraftTest, SurvivesTheSignalOfALogout) {
  openPanel();
  typeDraft("Log out now");
  application().process().signal(SIGTERM);
  EXPECT_EQ(application().process().wait(), (ChildProcess::ExitStatus{0, 0}));
  expectDraftAfterRestart("Log out now");
}

TEST_F(KeptDraftTest, SendsAnUnconfirmedNoteOnceAfterAKill) {
  serviceClient().addFault("POST", capturesPath, {{"hang", true}, {"process", true}});
  sendNote("Precious");
  serviceClient().waitForRequests("POST", capturesPath);
  waitForStoredNotes({"Precious"});
  application().process().kill();
  serviceClient().clearFaults();

  // The panel opens by itself, without the keyboard, because notifications are off.
  restart();
  waitUntil([&] { return panel().has_value(); }, "the panel is shown");
  EXPECT_FALSE(panel()->active);
  waitForMessage(sendAgainText);
  openPanel();
  EXPECT_EQ(draft(), "Precious");
  EXPECT_FALSE(isEditable());
  desktop().keyboard().chord(sendKey);
  waitUntilPanelHidden();
  EXPECT_THAT(storedNotes(), testing::ElementsAre("Precious"));
  ASSERT_EQ(posts().size(), 2u);
  EXPECT_EQ(posts()[0].body, posts()[1].body);
  EXPECT_EQ(posts()[0].header("Idempotency-Key"), posts()[1].header("Idempotency-Key"));
}

TEST_F(KeptDraftTest, ADamagedFileIsSetAsideAndReported) {
  application().process().terminate();
  writeFile(draftFile(), "{\"version\": 1, \"text\": \"ha");
  restart();
  openPanel();
  EXPECT_EQ(draft(), "");
  EXPECT_EQ(readFile(draftFile().string() + ".damaged"), "{\"version\": 1, \"text\": \"ha");
  EXPECT_THAT(application().errorText(),
              testing::HasSubstr("damaged; the file is kept as capture-draft.json.damaged"));
}

TEST_F(KeptDraftTest, ShowsAFailureThatArrivesWhileThePanelIsHidden) {
  serviceClient().addFault("GET", "/api/auth/me", {{"hang", true}});
  sendNote("Out of sight");
  serviceClient().waitForRequests("GET", "/api/auth/me");
  desktop().display().activate(other().id());
  waitUntilPanelHidden();
  service().stop();
  waitUntil([&] { return panel().has_value(); }, "the panel is shown");
  EXPECT_FALSE(panel()->active);
  desktop().display().waitUntilActive(other().id());
  waitForMessage(offlineText);
  // The other program keeps the keyboard.
  desktop().keyboard().type("x");
  EXPECT_EQ(draft(), "Out of sight");
  EXPECT_TRUE(panel().has_value());
}

TEST_F(KeptDraftTest, SendsWhileThePageShowsADialog) {
  page().evaluate("setTimeout(() => confirm('Sure?')); return true");
  widget("push button", "Cancel");
  sendNote("Despite the dialog");
  waitForStoredNotes({"Despite the dialog"});
}

// With a notification daemon and notifications on.
class NotifiedDraftTest : public KeptDraftTest {
 protected:
  void prepare() override {}
  void SetUp() override {
    daemon.emplace(desktop().sessionBusAddress());
    KeptDraftTest::SetUp();
  }
  void TearDown() override {
    KeptDraftTest::TearDown();
    daemon.reset();
  }
  std::optional<FakeNotificationDaemon> daemon;
};

TEST_F(NotifiedDraftTest, ClickingTheNotificationOfAFailureOpensThePanel) {
  openPanel();
  typeDraft("Out of sight");
  serviceClient().addFault("POST", capturesPath, {{"hang", true}});
  desktop().keyboard().chord(sendKey);
  serviceClient().waitForRequests("POST", capturesPath);
  desktop().display().activate(other().id());
  waitUntilPanelHidden();
  service().stop();
  waitUntil([&] { return !daemon->notifications().empty(); }, "the failure is notified");
  const auto notification = daemon->notifications().back();
  EXPECT_EQ(notification.summary, "Quick Note — Navora");
  EXPECT_EQ(notification.body, sendAgainText);
  EXPECT_FALSE(panel());
  daemon->click(notification.id);
  waitUntil([&] { return panel() && panel()->active; }, "the panel is open");
  EXPECT_EQ(draft(), "Out of sight");
  EXPECT_FALSE(isEditable());
}

}  // namespace
}  // namespace navora::driver
