#include <array>
#include <csignal>
#include <sstream>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include "hosts/linux/installation/UpdateInstaller.h"
#include "linux/installation/FileTree.h"
#include "linux/installation/Processes.h"
#include "linux/installation/SampleVersion.h"
#include "linux/support/EnvironmentVariable.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;

constexpr std::chrono::seconds longPatience{60};
constexpr std::chrono::milliseconds shortPatience{100};

// The versions are shell scripts that log that they run.
class UpdateInstallerTest : public testing::Test {
 protected:
  UpdateInstallerTest() {
    makeSampleVersion(installation_, "1.0", lineOf("1.0"));
    old_ = describeTree(installation_);
  }
  ~UpdateInstallerTest() override { waitForAll(); }

  static std::string lineOf(const std::string& version) {
    return "echo \"" + version +
           "${NAVORA_UPDATE_FAILED:+ after a failure}${NAVORA_UPDATE_STARTED:+ after an update} "
           "$WORD\" >> \"$NAVORA_TEST_LOG\"";
  }
  static std::string confirmation() { return "exec " NAVORA_CONFIRM_START; }

  // Prepares the new version, whose program runs `script` after writing its line.
  void prepare(const std::string& script) {
    auto folder = UpdateFolder::claim(*Installation::at(installation_));
    ASSERT_TRUE(folder);
    makeSampleVersion(folder->version(), "2.0", lineOf("2.0") + "\n" + script);
    new_ = describeTree(folder->version());
    folder_.emplace(*std::move(folder));
  }
  bool install(std::chrono::milliseconds patience = longPatience) {
    return install(FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)), patience);
  }
  bool install(FileDescriptor application, std::chrono::milliseconds patience = longPatience) {
    const EnvironmentVariable log("NAVORA_TEST_LOG", log_.string());
    const EnvironmentVariable word("WORD", "word");
    const EnvironmentVariable noFailure("NAVORA_UPDATE_FAILED", std::nullopt);
    UpdateInstaller installer(*Installation::at(installation_), *std::move(folder_),
                              std::move(application));
    folder_.reset();
    return installer.run(patience);
  }
  std::vector<std::string> lines() const {
    waitForAll();
    std::istringstream text(readFile(log_));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
      lines.push_back(line);
    return lines;
  }
  // Returns the names of the entries in the installation's parent folder.
  std::vector<std::string> beside() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(parent_.path()))
      names.push_back(entry.path().filename().string());
    return names;
  }

  const TemporaryDirectory logs_;
  const std::filesystem::path log_ = logs_.path() / "log";
  const TemporaryDirectory parent_;
  const std::filesystem::path installation_ = parent_.path() / "navora";
  std::optional<UpdateFolder> folder_;
  FileTree old_;
  FileTree new_;
};

TEST_F(UpdateInstallerTest, ANewVersionThatConfirmsItsStartStays) {
  prepare(confirmation());
  EXPECT_TRUE(install());
  EXPECT_THAT(lines(), ElementsAre("2.0 after an update word"));
  EXPECT_EQ(describeTree(installation_), new_);
  EXPECT_THAT(beside(), ElementsAre("navora"));
}

TEST_F(UpdateInstallerTest, RestoresTheOldVersionIfTheNewOneExits) {
  prepare("exit 0");
  EXPECT_FALSE(install());
  EXPECT_THAT(lines(), ElementsAre("2.0 after an update word", "1.0 after a failure word"));
  EXPECT_EQ(describeTree(installation_), old_);
  EXPECT_THAT(beside(), ElementsAre("navora"));
}

TEST_F(UpdateInstallerTest, RestoresTheOldVersionIfTheNewOneCrashes) {
  prepare("kill -SEGV $$");
  EXPECT_FALSE(install());
  EXPECT_THAT(lines(), ElementsAre("2.0 after an update word", "1.0 after a failure word"));
  EXPECT_EQ(describeTree(installation_), old_);
  EXPECT_THAT(beside(), ElementsAre("navora"));
}

TEST_F(UpdateInstallerTest, KillsANewVersionThatHangsAndRestoresTheOldOne) {
  prepare("exec sleep 1000");
  EXPECT_FALSE(install(shortPatience));
  // All processes must have exited, or this would take long.
  EXPECT_EQ(lines().back(), "1.0 after a failure word");
  EXPECT_EQ(describeTree(installation_), old_);
  EXPECT_THAT(beside(), ElementsAre("navora"));
}

TEST_F(UpdateInstallerTest, RestoresTheOldVersionIfTheNewOneCannotBeStarted) {
  prepare("");
  std::filesystem::permissions(folder_->version() / "bin" / "navora",
                               std::filesystem::perms::owner_read);
  EXPECT_FALSE(install());
  EXPECT_THAT(lines(), ElementsAre("1.0 after a failure word"));
  EXPECT_EQ(describeTree(installation_), old_);
  EXPECT_THAT(beside(), ElementsAre("navora"));
}

TEST_F(UpdateInstallerTest, RestartsTheOldVersionIfTheNewOneIsMissing) {
  prepare("");
  std::filesystem::remove_all(folder_->version());
  EXPECT_FALSE(install());
  EXPECT_THAT(lines(), ElementsAre("1.0 after a failure word"));
  EXPECT_EQ(describeTree(installation_), old_);
  EXPECT_THAT(beside(), ElementsAre("navora"));
}

TEST_F(UpdateInstallerTest, RunsTheOldVersionInTheUpdateFolderIfItCannotBeRestored) {
  prepare("mv \"$(dirname \"$(dirname \"$0\")\")\" " + (parent_.path() / "moved").string());
  const auto waiting = folder_->version();
  EXPECT_FALSE(install());
  EXPECT_THAT(lines(), ElementsAre("2.0 after an update word", "1.0 after a failure word"));
  EXPECT_EQ(describeTree(waiting), old_);
}

// The crashing application logs the version that it sees last.
TEST_F(UpdateInstallerTest, WaitsForAnApplicationThatCrashes) {
  prepare(confirmation());
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  FileDescriptor reading(ends[0]);
  const auto record = installation_ / Installation::recordName;
  const pid_t application = ::fork();
  if (application == 0) {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    std::error_code error;
    // Long enough for an exchange that would not wait.
    for (int round = 0; round < 200; ++round)
      ::sched_yield();
    std::filesystem::copy_file(record, log_.parent_path() / "seen", error);
    std::signal(SIGABRT, SIG_DFL);
    std::abort();
  }
  ::close(ends[1]);
  EXPECT_TRUE(install(std::move(reading)));
  EXPECT_EQ(readFile(logs_.path() / "seen"), Installation::record("1.0"));
  EXPECT_THAT(lines(), ElementsAre("2.0 after an update word"));
  EXPECT_EQ(describeTree(installation_), new_);
}

// The reader of the application's standard error has exited with it.
TEST_F(UpdateInstallerTest, RestoresTheOldVersionWithAClosedStandardError) {
  prepare("exit 1");
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  ::close(ends[0]);
  const pid_t installer = ::fork();
  if (installer == 0) {
    std::signal(SIGPIPE, SIG_DFL);
    ::dup2(ends[1], STDERR_FILENO);
    ::_exit(install() ? 2 : 0);
  }
  folder_->handOver();
  folder_.reset();
  ::close(ends[1]);
  EXPECT_EQ(waitFor(installer), 0);
  EXPECT_EQ(describeTree(installation_), old_);
}

TEST_F(UpdateInstallerTest, ReceivesTheConfirmationWithoutStandardDescriptors) {
  prepare("test \"$NAVORA_UPDATE_STARTED\" -gt 2 && " + confirmation());
  const pid_t installer = ::fork();
  if (installer == 0) {
    FileDescriptor application(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    for (int file = 0; file <= STDERR_FILENO; ++file)
      ::close(file);
    ::_exit(install(std::move(application)) ? 0 : 2);
  }
  folder_->handOver();
  folder_.reset();
  EXPECT_EQ(waitFor(installer), 0);
  EXPECT_EQ(describeTree(installation_), new_);
}

TEST_F(UpdateInstallerTest, TheApplicationDoesNotInheritIgnoredSignals) {
  prepare("grep SigIgn /proc/self/status >> \"$NAVORA_TEST_LOG\"\n" + confirmation());
  EXPECT_TRUE(install());
  const auto written = lines();
  ASSERT_EQ(written.size(), 2U);
  const auto ignored = std::stoull(written[1].substr(written[1].find(':') + 1), nullptr, 16);
  EXPECT_EQ(ignored & (1ULL << (SIGPIPE - 1)), 0U);
}

}  // namespace
}  // namespace navora
