#include <cstdlib>
#include <ostream>

#include <gtest/gtest.h>

#include "app/NavoraMain.h"
#include "fakes/FakeImaging.h"

namespace navora {
namespace {

using Arguments = std::vector<std::string>;

struct Outcome {
  int status = 0;
  int applicationRuns = 0;
  LaunchPurpose purpose = LaunchPurpose::application;
  std::string output = {};
  std::string errors = {};
  bool operator==(const Outcome&) const = default;
};

constexpr int applicationStatus = 42;

Outcome run(const Arguments& arguments, CommandLineStyle style = CommandLineStyle::strict) {
  Outcome outcome;
  FakeImaging imaging;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  outcome.status = NavoraMain::main(arguments, {.style = style,
                                                .imaging = imaging,
                                                .version = [] { return "1.2.3"; },
                                                .runApplication =
                                                    [&](LaunchPurpose purpose) {
                                                      ++outcome.applicationRuns;
                                                      outcome.purpose = purpose;
                                                      return applicationStatus;
                                                    }});
  outcome.output = testing::internal::GetCapturedStdout();
  outcome.errors = testing::internal::GetCapturedStderr();
  return outcome;
}

const Outcome applicationRan{.status = applicationStatus, .applicationRuns = 1};
const Outcome selfTestsPassed{
    .output =
        "PASS: desktop navigation policy (17 checks)\nPASS: quick capture "
        "policy (11 checks)\nPASS: native locale policy (3 checks)\nPASS: "
        "Navora menu bar icon (transparent corners, visible mark, template)\n"};

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << "status " << outcome.status << ", " << outcome.applicationRuns << " runs, \""
          << outcome.output << "\", \"" << outcome.errors << '"';
}

TEST(NavoraMain, RunsTheApplicationAndReturnsItsStatus) {
  EXPECT_EQ(run({"navora"}), applicationRan);
  EXPECT_EQ(run({}), applicationRan);
}

TEST(NavoraMain, PrintsOneVerdictPerSelfTestInOrderWithoutRunningTheApplication) {
  EXPECT_EQ(run({"navora", "--self-test"}), selfTestsPassed);
}

TEST(NavoraMain, TakesTheSelfTestArgumentAtAnyPosition) {
  EXPECT_EQ(run({"navora", "--capture", "--self-test", "https://navora.example"}), selfTestsPassed);
  EXPECT_EQ(run({"navora", "--self-test", "--self-test"}), selfTestsPassed);
}

TEST(NavoraMain, TakesNoOtherArgumentForTheSelfTest) {
  for (const char* argument : {"--Self-Test", "--self-tests", "--self-test=1", "-self-test",
                               "self-test", " --self-test", "--self-test ", "--self", ""}) {
    const Outcome outcome = run({"navora", argument});
    EXPECT_EQ(outcome.status, 2) << argument;
    EXPECT_EQ(outcome.output, "") << argument;
  }
}

TEST(NavoraMain, RunsTheApplicationForTheCapturePanel) {
  const Outcome outcome = run({"navora", "--capture"});
  EXPECT_EQ(outcome.applicationRuns, 1);
  EXPECT_EQ(outcome.purpose, LaunchPurpose::capture);
}

TEST(NavoraMain, ReportsAnUnknownArgumentInOneLineAndReturns2) {
  EXPECT_EQ(run({"navora", "--capture", "--bogus"}),
            (Outcome{.status = 2,
                     .errors = "navora: unknown argument \"--bogus\"; \"navora --help\" lists the "
                               "options\n"}));
}

TEST(NavoraMain, PrintsTheVersionOfTheProgram) {
  EXPECT_EQ(run({"navora", "--version"}), (Outcome{.output = "navora 1.2.3\n"}));
}

TEST(NavoraMain, PrintsTheHelp) {
  EXPECT_EQ(run({"navora", "--help"}),
            (Outcome{.output = commandLineHelp(CommandLineStyle::strict)}));
  EXPECT_EQ(run({"navora", "--help"}, CommandLineStyle::macos),
            (Outcome{.output = commandLineHelp(CommandLineStyle::macos)}));
}

TEST(NavoraMain, DoesNotDependOnTheConfiguredOrigin) {
  ASSERT_EQ(setenv("NAVORA_URL", "https://preview.example", 1), 0);
  EXPECT_EQ(run({"navora", "--self-test"}), selfTestsPassed);
  unsetenv("NAVORA_URL");
}

}  // namespace
}  // namespace navora
