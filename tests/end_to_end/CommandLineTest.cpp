#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "end_to_end/driver/ApplicationProcess.h"
#include "end_to_end/driver/Executables.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

using Arguments = std::vector<std::string>;

constexpr const char* everyLine =
    "PASS: desktop navigation policy (17 checks)\n"
    "PASS: quick capture policy (11 checks)\n"
    "PASS: native locale policy (3 checks)\n"
    "PASS: Navora menu bar icon (transparent corners, visible mark, template)\n";

constexpr ChildProcess::ExitStatus success{0, 0};

// Runs the program without a desktop: no display, no bus, an empty home.
class CommandLineTest : public testing::Test {
 protected:
  ApplicationProcess::Outcome run(const Arguments& arguments) {
    ChildProcess::Options options;
    options.arguments = {applicationExecutable()};
    options.arguments.insert(options.arguments.end(), arguments.begin(), arguments.end());
    options.environment = baseEnvironment();
    options.environment["HOME"] = home();
    options.environment["LANG"] = "C.UTF-8";
    options.standardOutput = folder_.path() / "output";
    options.standardError = folder_.path() / "errors";
    options.workingDirectory = home();
    ChildProcess process(std::move(options));
    ApplicationProcess::Outcome outcome;
    outcome.status = process.wait();
    outcome.output = process.outputText();
    outcome.errors = process.errorText();
    return outcome;
  }

  void expectSelfTest(const Arguments& arguments) {
    const auto outcome = run(arguments);
    EXPECT_EQ(outcome.status, success);
    EXPECT_EQ(outcome.output, everyLine);
    EXPECT_EQ(outcome.errors, "");
  }

  std::filesystem::path home() const {
    auto path = folder_.path() / "home";
    std::filesystem::create_directories(path);
    return path;
  }

 private:
  TemporaryDirectory folder_{"navora-command-line"};
};

TEST_F(CommandLineTest, TheSelfTestPrintsItsLinesAndEndsWithSuccessWithoutADesktop) {
  expectSelfTest({"--self-test"});
}

TEST_F(CommandLineTest, TheSelfTestIsChosenByTheArgumentAtAnyPosition) {
  expectSelfTest({"--self-test", "more"});
  expectSelfTest({"more", "--self-test"});
  expectSelfTest({"--unknown", "--self-test=1", "--self-test", "--self-test", ""});
}

TEST_F(CommandLineTest, TheSelfTestLeavesNothingBehind) {
  run({"--self-test"});
  EXPECT_TRUE(std::filesystem::is_empty(home()));
}

// The premise of the other tests: the application needs a display.
TEST_F(CommandLineTest, TheApplicationItselfDoesNotRunWithoutADisplay) {
  const auto outcome = run({});
  EXPECT_NE(outcome.status, success);
  EXPECT_EQ(outcome.output, "");
  EXPECT_NE(outcome.errors.find("display"), std::string::npos) << outcome.errors;
}

TEST_F(CommandLineTest, AnArgumentThatIsNoOptionEndsTheProgramWithStatus2AndOneLine) {
  for (const std::string argument :
       {"--Self-Test", "--self-test=1", "-self-test", "--self-test ", "--bogus", "note.txt"}) {
    const auto outcome = run({argument});
    EXPECT_EQ(outcome.status, (ChildProcess::ExitStatus{2, 0})) << argument;
    EXPECT_EQ(outcome.output, "") << argument;
    EXPECT_EQ(outcome.errors, "navora: unknown argument \"" + argument +
                                  "\"; \"navora --help\" lists the options\n");
  }
}

TEST_F(CommandLineTest, PrintsTheVersionWithoutADesktop) {
  const auto outcome = run({"--version"});
  EXPECT_EQ(outcome.status, success);
  EXPECT_EQ(outcome.output, "navora " NAVORA_VERSION "\n");
  EXPECT_EQ(outcome.errors, "");
}

TEST_F(CommandLineTest, PrintsTheHelpWithoutADesktop) {
  const auto outcome = run({"--help"});
  EXPECT_EQ(outcome.status, success);
  EXPECT_TRUE(outcome.output.starts_with("Usage: navora [OPTION]\n")) << outcome.output;
  EXPECT_EQ(outcome.errors, "");
}

}  // namespace
}  // namespace navora::driver
