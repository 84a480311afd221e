#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <signal.h>

#include "end_to_end/driver/EndToEndTest.h"
#include "end_to_end/driver/UpdatableInstallation.h"
#include "tests/support/Files.h"
#include "tests/support/Wait.h"

namespace navora::driver {
namespace {

using std::filesystem::path;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* oldVersion = "1.0";
constexpr const char* newVersion = "1.1";

// An installation that can update itself, and a service with a feed of releases.
class UpdateTest : public EndToEndTest {
 public:
  static void SetUpTestSuite() {
    EndToEndTest::SetUpTestSuite();
    // The build that releases are made from, shared by all tests.
    built_ = std::make_unique<TemporaryDirectory>("navora-built");
    installBuild(built());
  }
  static void TearDownTestSuite() {
    built_.reset();
    EndToEndTest::TearDownTestSuite();
  }

 protected:
  static path built() { return built_->path(); }

  ServiceProcess::Options serviceOptions() const override {
    auto options = EndToEndTest::serviceOptions();
    options.arguments = {"--updates", installation.releases().string()};
    return options;
  }
  ApplicationProcess::Options applicationOptions() const override {
    return {.executable = installation.program()};
  }
  bool startsApplication() const override { return false; }
  void TearDown() override {
    EndToEndTest::TearDown();
    // An installer that was waiting for the application, which is dead now, starts it again.
    waitUntil([&] { return !installation.isInstallerRunning(); }, "the installer has ended");
    // The engine's processes too: they would still write to the home folder of the next test.
    std::vector<pid_t> processes = installation.runningPrograms();
    for (const pid_t program : installation.runningPrograms()) {
      for (const ProcessInfo& descendant : descendantsOf(program))
        processes.push_back(descendant.pid);
    }
    for (const pid_t process : processes)
      ::kill(process, SIGKILL);
    waitUntil([&] { return std::ranges::none_of(processes, isAlive); },
              "the application has ended");
    waitUntil([&] { return installation.runningPrograms().empty(); },
              "no program was started anew");
  }

  void launchSignedIn() {
    launch();
    signIn();
  }
  void press(const std::string& button) { widget("push button", button).press(); }
  // Waits for the update that is offered automatically after the start.
  void waitForOffer() { widget("heading", "Navora 1.1 is available"); }

  // Waits for the relaunched process to show its window, and returns its pid.
  pid_t waitForSuccessor() {
    const pid_t first = application().pid();
    pid_t successor = 0;
    desktop().display().waitForWindow(
        [&](const WindowInfo& window) {
          const auto programs = installation.runningPrograms();
          const bool ours =
              window.pid != first && std::ranges::find(programs, window.pid) != programs.end();
          if (ours && window.mapped) successor = window.pid;
          return successor != 0;
        },
        "the window of the application that was started again");
    return successor;
  }
  bool shows(pid_t pid, const std::string& label) {
    return desktop().accessibility().find({.role = "heading", .name = label}, pid).has_value();
  }
  std::string reminder(const std::string& key) {
    const auto stored =
        Json::parse(readFile(desktop().configHome() / "navora/defaults.json"), nullptr, false);
    return stored.is_object() && stored.contains(key) ? stored[key].dump() : std::string();
  }

  static std::unique_ptr<TemporaryDirectory> built_;
  TemporaryDirectory folder{"navora-update"};
  UpdatableInstallation installation{folder.path(), built(), oldVersion};
};

std::unique_ptr<TemporaryDirectory> UpdateTest::built_;

TEST_F(UpdateTest, ReplacesTheInstallationAndRunsTheNewVersion) {
  installation.release(built(), newVersion);
  launchSignedIn();
  waitForOffer();
  press("Update Now");
  const pid_t successor = waitForSuccessor();
  EXPECT_FALSE(application().running());
  EXPECT_EQ(installation.version(), newVersion);
  waitUntil([&] { return installation.leftovers().empty(); },
            "nothing is left beside the installation");
  // Still signed in, and no update is offered.
  const auto shown = serviceClient().waitForRequests("GET", "/api/auth/me", 2);
  EXPECT_FALSE(shown.empty());
  EXPECT_FALSE(shows(successor, "Navora 1.1 is available"));
  EXPECT_THAT(reminder("navora.updateReminder.pending"), IsEmpty());
  EXPECT_THAT(reminder("navora.updateReminder.ignoredVersion"), IsEmpty());
}

TEST_F(UpdateTest, IsRememberedWhenItIsPostponed) {
  installation.release(built(), newVersion);
  launchSignedIn();
  waitForOffer();
  press("Remind Me in 1 Hour");
  waitUntil([&] { return !hasWidget("heading", "Navora 1.1 is available"); },
            "the banner is hidden");
  EXPECT_THAT(reminder("navora.updateReminder.pending"), HasSubstr("\"version\":\"1.1\""));
  EXPECT_EQ(installation.version(), oldVersion);
  EXPECT_THAT(installation.leftovers(), IsEmpty());
}

TEST_F(UpdateTest, WaitsForUnsavedInput) {
  installation.release(built(), newVersion);
  launchSignedIn();
  page().type("#capture-input", "A thought");
  waitForOffer();
  press("Update Now");
  widget("push button", "Continue Update");
  EXPECT_EQ(installation.version(), oldVersion);
  EXPECT_EQ(page().evaluate("return document.querySelector('#capture-input').innerText"),
            "A thought");
  page().evaluate(
      "const input = document.querySelector('#capture-input'); input.textContent = '';"
      "input.dispatchEvent(new Event('input', {bubbles: true}))");
  press("Continue Update");
  waitForSuccessor();
  EXPECT_EQ(installation.version(), newVersion);
}

TEST_F(UpdateTest, LetsTheUserTryAgainWhenThePageDoesNotAnswer) {
  installation.release(built(), newVersion);
  launchSignedIn();
  page().evaluate(
      "window.NavoraUpdateGuard = {resume() { window.resumed = true; }, prepare() {"
      "  for (const end = performance.now() + 8000; performance.now() < end;); }}");
  waitForOffer();
  press("Update Now");
  widget("push button", "Continue Update");
  widget("label", "Couldn’t check for unsaved input. Try the update again.");
  EXPECT_EQ(installation.version(), oldVersion);
  page().waitUntilTrue("window.resumed", "the page is resumed after its late answer");
  page().evaluate("NavoraUpdateGuard = {prepare() {}, resume() {}}");
  press("Continue Update");
  waitForSuccessor();
  EXPECT_EQ(installation.version(), newVersion);
}

TEST_F(UpdateTest, RefusesAReleaseSignedWithAnotherKey) {
  const auto key = folder.path() / "other-key";
  makeUpdateKey(key);
  installation.release(built(), newVersion, key);
  launchSignedIn();
  waitForOffer();
  press("Update Now");
  widget("heading", "Couldn’t update Navora");
  EXPECT_THAT(application().errorText(),
              HasSubstr("Navora updater: verification: The signature of the archive is not valid"));
  EXPECT_EQ(installation.version(), oldVersion);
  EXPECT_THAT(installation.leftovers(), IsEmpty());
  // The page accepts input again.
  page().type("#capture-input", "Still here");
}

TEST_F(UpdateTest, RollsBackWhenTheNewVersionDoesNotStart) {
  const path broken = folder.path() / "broken";
  std::filesystem::copy(built(), broken, std::filesystem::copy_options::recursive);
  std::filesystem::remove(broken / "bin/navora");
  writeFile(broken / "bin/navora", "#!/bin/sh\ntest \"$1\" = --self-test\n");
  std::filesystem::permissions(broken / "bin/navora", std::filesystem::perms(0755));
  installation.release(broken, newVersion);
  launchSignedIn();
  waitForOffer();
  press("Update Now");
  const pid_t successor = waitForSuccessor();
  EXPECT_EQ(installation.version(), oldVersion);
  waitUntil([&] { return shows(successor, "Couldn’t update Navora"); }, "the failure is told");
  EXPECT_THAT(installation.leftovers(), IsEmpty());
}

TEST_F(UpdateTest, ReportsThatThereIsNoUpdate) {
  installation.release(built(), oldVersion);
  launchSignedIn();
  widget("menu", "Navora").press();
  widget("menu item", "Check for Updates…").press();
  widget("heading", "No updates for this system");
  press("Close");
  waitUntil([&] { return !hasWidget("heading", "No updates for this system"); },
            "the banner is hidden");
}

TEST_F(UpdateTest, AnnouncesAReleaseThatCannotBeInstalled) {
  // Files of the user's in the installation would be deleted with the old version.
  writeFile(installation.folder() / "my notes.txt", "mine");
  installation.release(built(), newVersion);
  launchSignedIn();
  widget("heading", "A new version is available");
  EXPECT_FALSE(hasWidget("push button", "Update Now"));
  press("Later");
  waitUntil([&] { return !hasWidget("heading", "A new version is available"); },
            "the banner is hidden");
}

TEST_F(UpdateTest, IgnoresAFeedThatFailsInTheBackground) {
  writeFile(installation.releases() / "appcast.xml",
            "<!DOCTYPE rss [<!ENTITY a \"b\">]><rss><channel/></rss>");
  launchSignedIn();
  serviceClient().waitForRequests("GET", "/updates/appcast.xml");
  widget("menu", "Navora").press();
  widget("menu item", "Check for Updates…").press();
  widget("heading", "Couldn’t update Navora");
  EXPECT_THAT(application().errorText(),
              HasSubstr("Navora updater: feed: The feed declares a document type"));
}

}  // namespace
}  // namespace navora::driver
