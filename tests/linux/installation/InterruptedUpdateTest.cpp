// Interrupts an update at each of its changes to the disk.
#include <csignal>
#include <map>

#include <gmock/gmock.h>

#include "hosts/linux/installation/UpdateFolder.h"
#include "linux/installation/FileTree.h"
#include "linux/installation/Processes.h"
#include "linux/installation/SampleVersion.h"
#include "make-update/ArchiveWriter.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::AnyOf;

// Far above the number of changes, to stop a test that would never end.
constexpr int tooManyCalls = 500;
// Fewer would mean that the calls are not intercepted.
constexpr int fewCalls = 30;

struct Scenario {
  const char* name;
  // The script of the new version.
  const char* script;
  int outcome;
};

void PrintTo(const Scenario& scenario, std::ostream* stream) {
  *stream << scenario.name;
}

class InterruptedUpdateTest : public testing::TestWithParam<Scenario> {
 protected:
  InterruptedUpdateTest() {
    adoptOrphans();
    const auto next = files_.path() / "next";
    makeSampleVersion(next, "2.0", line("2.0") + "\n" + GetParam().script);
    EXPECT_EQ(writeArchive(next, "2.0", archive_), std::nullopt);
    new_ = describeTree(next);
    reset();
    old_ = describeTree(installation_);
  }
  ~InterruptedUpdateTest() override { waitForAll(); }

  static std::string line(const std::string& version) {
    return "echo " + version + " >> \"$NAVORA_TEST_LOG\"";
  }
  void reset() const {
    for (const auto& entry : std::filesystem::directory_iterator(parent_.path()))
      std::filesystem::remove_all(entry.path());
    std::filesystem::remove(log_);
    std::filesystem::remove(errors_);
    makeSampleVersion(installation_, "1.0", line("1.0"));
  }

  // Returns the exit of a process that is interrupted at the call.
  int update(const std::string& mode, int call) const {
    const pid_t process =
        startProgram(NAVORA_UPDATE_STEP,
                     {installation_.string(), archive_.string(), "2.0", key_.publicText(),
                      key_.signFile(archive_).value_or("none")},
                     {{"LD_PRELOAD", NAVORA_INTERRUPTED_CALLS},
                      {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"},
                      {"NAVORA_INTERRUPT_MODE", mode},
                      {"NAVORA_INTERRUPT_CALL", std::to_string(call)},
                      {"NAVORA_TEST_LOG", log_.string()}},
                     errors_);
    const int outcome = waitFor(process);
    // Waits for the programs that it had started.
    waitForAll();
    return outcome;
  }

  void expectAWholeVersion() const {
    const FileTree found = describeTree(installation_);
    ASSERT_THAT(found, AnyOf(old_, new_));
    const auto started = files_.path() / "started";
    std::filesystem::remove(started);
    waitFor(startProgram(installation_ / "bin" / "navora", {},
                         {{"NAVORA_TEST_LOG", started.string()}}));
    ASSERT_EQ(readFile(started), found == old_ ? "1.0\n" : "2.0\n");
  }
  void expectNothingBeside() const {
    UpdateFolder::removeLeftovers(*Installation::at(installation_));
    FileTree beside = describeTree(parent_.path(), installation_);
    beside.erase("navora");
    ASSERT_EQ(beside, FileTree());
  }

  // Returns the number of calls of an update that is not interrupted.
  int interruptAll(const std::string& mode) const {
    for (int call = 1; call < tooManyCalls; ++call) {
      reset();
      const int outcome = update(mode, call);
      SCOPED_TRACE(mode + " call " + std::to_string(call) + ": " + readFile(errors_));
      expectAWholeVersion();
      expectNothingBeside();
      if (HasFatalFailure()) return 0;
      if (outcome == GetParam().outcome) return call - 1;
      EXPECT_EQ(outcome, -SIGKILL);
    }
    ADD_FAILURE() << "The update never completes";
    return tooManyCalls;
  }

  int callsUntilTheEnd() const {
    static std::map<std::string, int> counted;
    const auto [place, isNew] = counted.try_emplace(GetParam().name, 0);
    if (isNew) place->second = interruptAll("before");
    return place->second;
  }

  const TemporaryDirectory files_;
  const TemporaryDirectory parent_;
  const std::filesystem::path installation_ = parent_.path() / "navora";
  const std::filesystem::path archive_ = files_.path() / "archive";
  const std::filesystem::path log_ = files_.path() / "log";
  const std::filesystem::path errors_ = files_.path() / "errors";
  const SigningKey key_ = SigningKey::make();
  FileTree old_;
  FileTree new_;
};

TEST_P(InterruptedUpdateTest, KilledBeforeAnyChangeItLeavesACompleteVersion) {
  EXPECT_GT(callsUntilTheEnd(), fewCalls);
}

TEST_P(InterruptedUpdateTest, KilledAfterAnyChangeItLeavesACompleteVersion) {
  EXPECT_GT(interruptAll("after"), fewCalls);
}

TEST_P(InterruptedUpdateTest, IfAnyChangeFailsACompleteVersionRuns) {
  const int calls = callsUntilTheEnd();
  ASSERT_GT(calls, fewCalls);
  int ended = 0;
  for (int call = 1; call <= calls; ++call) {
    reset();
    const int outcome = update("fail", call);
    SCOPED_TRACE("failing call " + std::to_string(call) + ": " + readFile(errors_));
    ASSERT_GE(outcome, 0);
    expectAWholeVersion();
    // From the installer's start on, a version always runs in the end.
    const std::string started = readFile(log_);
    const bool newVersionRuns = outcome == 0 && started == "2.0\n";
    const bool oldVersionRuns = outcome == 1 && started.ends_with("1.0\n");
    const bool installerWasNotReached = outcome == 1 && started.empty();
    if (!newVersionRuns && !oldVersionRuns && !installerWasNotReached) ++ended;
    expectNothingBeside();
    if (HasFatalFailure()) return;
  }
  // Starting the old version after the new one has failed can fail too.
  EXPECT_EQ(ended, GetParam().outcome);
}

INSTANTIATE_TEST_SUITE_P(, InterruptedUpdateTest,
                         testing::Values(Scenario{"ThatSucceeds", "exec " NAVORA_CONFIRM_START, 0},
                                         Scenario{"ThatIsTakenBack", "exit 1", 1}),
                         [](const auto& scenario) { return scenario.param.name; });

}  // namespace
}  // namespace navora
