#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "end_to_end/driver/ChildProcess.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

class ChildProcessTest : public testing::Test {
 protected:
  ChildProcess::Options shell(const std::string& script) const {
    ChildProcess::Options options;
    options.arguments = {"sh", "-c", script};
    options.environment = baseEnvironment();
    options.standardOutput = folder_.path() / "out";
    options.standardError = folder_.path() / "err";
    return options;
  }

  // Returns whether the process has exited. A zombie counts: init may not have reaped it yet.
  static bool hasExited(pid_t pid) {
    const std::string status = readFile("/proc/" + std::to_string(pid) + "/status");
    return status.empty() || status.find("State:\tZ") != std::string::npos;
  }

  TemporaryDirectory folder_{"navora-child-process"};
};

TEST_F(ChildProcessTest, ReturnsTheExitCode) {
  ChildProcess child(shell("exit 7"));
  EXPECT_EQ(child.wait(), (ChildProcess::ExitStatus{7, 0}));
}

TEST_F(ChildProcessTest, ReturnsTheFatalSignal) {
  ChildProcess child(shell("kill -ABRT $$"));
  EXPECT_EQ(child.wait(), (ChildProcess::ExitStatus{-1, SIGABRT}));
}

TEST_F(ChildProcessTest, KeepsOutputAndErrorsApart) {
  ChildProcess child(shell("echo one; echo two >&2"));
  child.wait();
  EXPECT_EQ(child.outputText(), "one\n");
  EXPECT_EQ(child.errorText(), "two\n");
}

TEST_F(ChildProcessTest, SeparatesTwoRunsThatWriteToTheSameFile) {
  ChildProcess(shell("echo first")).wait();
  ChildProcess child(shell("echo second"));
  child.wait();
  EXPECT_EQ(child.outputText(), "second\n");
  EXPECT_EQ(readFile(folder_.path() / "out"), "first\nsecond\n");
}

TEST_F(ChildProcessTest, WaitsForALine) {
  ChildProcess child(shell("echo port 12; exec sleep 60"));
  EXPECT_EQ(child.waitForLine("port "), "12");
}

TEST_F(ChildProcessTest, ReportsAProgramThatExitsBeforeItsLine) {
  ChildProcess child(shell("echo something else; echo trouble >&2"));
  try {
    child.waitForLine("port ");
    FAIL() << "there is no such line";
  } catch (const TestError& error) {
    EXPECT_NE(std::string(error.what()).find("trouble"), std::string::npos);
  }
}

TEST_F(ChildProcessTest, PassesExactlyTheGivenEnvironment) {
  setenv("NAVORA_UNRELATED", "1", 1);
  auto options = shell("echo [$ONE] [$NAVORA_UNRELATED]");
  options.environment["ONE"] = "a b";
  ChildProcess child(options);
  child.wait();
  EXPECT_EQ(child.outputText(), "[a b] []\n");
}

TEST_F(ChildProcessTest, KillsAProgramThatIgnoresSigterm) {
  ChildProcess child(shell("trap '' TERM; echo ready; while true; do sleep 1; done"));
  child.waitForLine("ready");
  EXPECT_EQ(child.terminate(std::chrono::milliseconds(100)).signal, SIGKILL);
}

TEST_F(ChildProcessTest, KillsWhatTheProgramStarted) {
  pid_t grandchild = 0;
  {
    ChildProcess child(shell("sleep 60 & echo started $!; wait"));
    grandchild = static_cast<pid_t>(std::stol(child.waitForLine("started ")));
    EXPECT_FALSE(hasExited(grandchild));
  }
  waitUntil([&] { return hasExited(grandchild); }, "the grandchild has exited");
}

TEST_F(ChildProcessTest, DiesWithItsParent) {
  auto options = shell("echo started $$; exec sleep 60");
  const pid_t starter = fork();
  if (starter == 0) {
    auto* child = new ChildProcess(options);
    child->waitForLine("started ");
    _exit(0);  // without destructors, as a crashed test would
  }
  int status = 0;
  ASSERT_EQ(waitpid(starter, &status, 0), starter);
  ASSERT_EQ(WEXITSTATUS(status), 0);
  const std::string line = readFile(options.standardOutput);
  ASSERT_EQ(line.substr(0, 8), "started ");
  const auto pid = static_cast<pid_t>(std::stol(line.substr(8)));
  waitUntil([&] { return hasExited(pid); }, "the child has exited with its parent");
}

TEST_F(ChildProcessTest, AProgramThatDoesNotExistIsNamed) {
  auto options = shell("");
  options.arguments = {"no-such-program-anywhere"};
  EXPECT_THROW(ChildProcess child(options), TestError);
}

}  // namespace
}  // namespace navora::driver
