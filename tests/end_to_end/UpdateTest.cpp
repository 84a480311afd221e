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
#include "end_to_end/driver/Executables.h"
#include "end_to_end/driver/Files.h"
#include "end_to_end/driver/Wait.h"

namespace navora::driver {
namespace {

using std::filesystem::path;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* oldVersion = "1.0";
constexpr const char* newVersion = "1.1";

// An installation of its own, as a user unpacks it, beside a service with a feed of releases.
class UpdateTest : public EndToEndTest {
 public:
  static void SetUpTestSuite() {
    EndToEndTest::SetUpTestSuite();
    // What releases are made of; the same for all tests.
    built_ = std::make_unique<TemporaryDirectory>("navora-built");
    run({NAVORA_CMAKE, "--install", NAVORA_BUILD_FOLDER, "--strip", "--prefix", built().string()});
  }
  static void TearDownTestSuite() {
    built_.reset();
    EndToEndTest::TearDownTestSuite();
  }

 protected:
  static path built() { return built_->path(); }

  static void run(const std::vector<std::string>& command) {
    ChildProcess::Options options;
    options.arguments = command;
    options.environment = baseEnvironment();
    ChildProcess program(options);
    ASSERT_EQ(program.wait(), (ChildProcess::ExitStatus{0, 0})) << command.front();
  }

  void prepare() override {
    std::filesystem::create_directories(installation().parent_path());
    std::filesystem::copy(built(), installation(), std::filesystem::copy_options::recursive);
    writeFile(installation() / "installation.json", Json{{"version", oldVersion}}.dump());
    std::filesystem::create_directories(releases());
  }
  ServiceProcess::Options serviceOptions() const override {
    auto options = EndToEndTest::serviceOptions();
    options.arguments = {"--updates", releases().string()};
    return options;
  }
  ApplicationProcess::Options applicationOptions() const override {
    return {.executable = program()};
  }
  bool startsApplication() const override { return false; }
  void TearDown() override {
    EndToEndTest::TearDown();
    for (const pid_t pid : runningPrograms())
      ::kill(pid, SIGKILL);
  }

  path installation() const { return folder_.path() / "Apps/navora"; }
  path program() const { return installation() / "bin/navora"; }
  path releases() const { return folder_.path() / "releases"; }
  path defaults() { return desktop().configHome() / "navora/defaults.json"; }

  std::string installedVersion() const {
    return Json::parse(readFile(installation() / "installation.json")).value("version", "");
  }
  // Beside the installation.
  std::vector<std::string> leftovers() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(installation().parent_path())) {
      if (entry.path() != installation()) names.push_back(entry.path().filename());
    }
    return names;
  }

  // A release of what is in the folder, signed with the key that this build trusts.
  void release(const path& content, const std::string& version, const path& key = developmentKey(),
               const std::vector<std::string>& options = {}) {
    std::vector<std::string> command{
        makeUpdate(), "release", "--installation", content.string(),
        "--version",  version,   "--key",          key.string(),
        "--url",      ".",       "--output",       releases().string()};
    command.insert(command.end(), options.begin(), options.end());
    run(command);
  }
  static path developmentKey() {
    return path(NAVORA_SOURCE_FOLDER) / "tools/development-update-key";
  }
  static std::string makeUpdate() {
    return (path(NAVORA_BUILD_FOLDER) / "bin/navora-make-update").string();
  }

  void launchSignedIn() {
    launch();
    signIn();
  }
  void press(const std::string& button) { widget("push button", button).press(); }
  // The update that is offered by itself soon after the start.
  void waitForOffer() { widget("heading", "Navora 1.1 is available"); }

  // The processes that run the installation's program, whichever version.
  std::vector<pid_t> runningPrograms() const {
    std::vector<pid_t> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
      const std::string name = entry.path().filename();
      if (!std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; })) continue;
      std::error_code error;
      if (std::filesystem::read_symlink(entry.path() / "exe", error) == program())
        found.push_back(static_cast<pid_t>(std::stol(name)));
    }
    return found;
  }
  // The process that was started in place of the first one, once it shows its window.
  pid_t waitForSuccessor() {
    const pid_t first = application().pid();
    pid_t successor = 0;
    desktop().display().waitForWindow(
        [&](const WindowInfo& window) {
          const auto programs = runningPrograms();
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
    const auto stored = Json::parse(readFile(defaults()), nullptr, false);
    return stored.is_object() && stored.contains(key) ? stored[key].dump() : std::string();
  }

  static std::unique_ptr<TemporaryDirectory> built_;
  TemporaryDirectory folder_{"navora-update"};
};

std::unique_ptr<TemporaryDirectory> UpdateTest::built_;

TEST_F(UpdateTest, ReplacesTheInstallationAndRunsTheNewVersion) {
  release(built(), newVersion);
  launchSignedIn();
  waitForOffer();
  press("Update app");
  const pid_t successor = waitForSuccessor();
  EXPECT_FALSE(application().running());
  EXPECT_EQ(installedVersion(), newVersion);
  waitUntil([&] { return leftovers().empty(); }, "nothing is left beside the installation");
  // It is signed in as before, and offers nothing.
  const auto shown = serviceClient().waitForRequests("GET", "/api/auth/me", 2);
  EXPECT_FALSE(shown.empty());
  EXPECT_FALSE(shows(successor, "Navora 1.1 is available"));
  EXPECT_THAT(reminder("navora.updateReminder.pending"), IsEmpty());
  EXPECT_THAT(reminder("navora.updateReminder.ignoredVersion"), IsEmpty());
}

TEST_F(UpdateTest, ComesBackLaterWhenItIsPostponed) {
  release(built(), newVersion);
  launchSignedIn();
  waitForOffer();
  press("Remind me in 1 hour");
  waitUntil([&] { return !hasWidget("heading", "Navora 1.1 is available"); }, "the banner is gone");
  EXPECT_THAT(reminder("navora.updateReminder.pending"), HasSubstr("\"version\":\"1.1\""));
  EXPECT_EQ(installedVersion(), oldVersion);
  EXPECT_THAT(leftovers(), IsEmpty());
}

TEST_F(UpdateTest, WaitsForWhatIsBeingWritten) {
  release(built(), newVersion);
  launchSignedIn();
  page().type("#capture-input", "A thought");
  waitForOffer();
  press("Update app");
  widget("push button", "Continue update");
  EXPECT_EQ(installedVersion(), oldVersion);
  EXPECT_EQ(page().evaluate("return document.querySelector('#capture-input').innerText"),
            "A thought");
  page().evaluate(
      "const input = document.querySelector('#capture-input'); input.textContent = '';"
      "input.dispatchEvent(new Event('input', {bubbles: true}))");
  press("Continue update");
  waitForSuccessor();
  EXPECT_EQ(installedVersion(), newVersion);
}

TEST_F(UpdateTest, RefusesWhatSomebodyElseHasSigned) {
  const auto key = releases() / "other-key";
  run({makeUpdate(), "key", key.string()});
  release(built(), newVersion, key);
  launchSignedIn();
  waitForOffer();
  press("Update app");
  widget("heading", "Couldn’t update Navora");
  EXPECT_THAT(application().errorText(),
              HasSubstr("Navora updater: verification: The signature of the archive is not valid"));
  EXPECT_EQ(installedVersion(), oldVersion);
  EXPECT_THAT(leftovers(), IsEmpty());
  // The page can be used as before.
  page().type("#capture-input", "Still here");
}

TEST_F(UpdateTest, GoesBackWhenTheNewVersionDoesNotStart) {
  const path broken = folder_.path() / "broken";
  std::filesystem::copy(built(), broken, std::filesystem::copy_options::recursive);
  std::filesystem::remove(broken / "bin/navora");
  writeFile(broken / "bin/navora", "#!/bin/sh\ntest \"$1\" = --self-test\n");
  std::filesystem::permissions(broken / "bin/navora", std::filesystem::perms(0755));
  release(broken, newVersion);
  launchSignedIn();
  waitForOffer();
  press("Update app");
  const pid_t successor = waitForSuccessor();
  EXPECT_EQ(installedVersion(), oldVersion);
  waitUntil([&] { return shows(successor, "Couldn’t update Navora"); }, "the failure is told");
  EXPECT_THAT(leftovers(), IsEmpty());
}

TEST_F(UpdateTest, SaysThatThereIsNothingNewer) {
  release(built(), oldVersion);
  launchSignedIn();
  widget("menu", "Navora").press();
  widget("menu item", "Check for Updates…").press();
  widget("heading", "No updates for this system");
  press("Close");
  waitUntil([&] { return !hasWidget("heading", "No updates for this system"); },
            "the banner is gone");
}

TEST_F(UpdateTest, OnlyTellsOfAReleaseWhereItCannotBeInstalled) {
  // Somebody keeps files of their own in there: they would be gone with the old version.
  writeFile(installation() / "my notes.txt", "mine");
  release(built(), newVersion);
  launchSignedIn();
  widget("heading", "A new version is available");
  EXPECT_FALSE(hasWidget("push button", "Update app"));
  press("Later");
  waitUntil([&] { return !hasWidget("heading", "A new version is available"); },
            "the banner is gone");
}

TEST_F(UpdateTest, SaysNothingOfAFeedThatFailsInTheBackground) {
  writeFile(releases() / "appcast.xml", "<!DOCTYPE rss [<!ENTITY a \"b\">]><rss><channel/></rss>");
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
