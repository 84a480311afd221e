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
  std::string output;
  std::string errors;
  bool operator==(const Outcome&) const = default;
};

constexpr int applicationStatus = 42;

Outcome run(const Arguments& arguments) {
  Outcome outcome;
  FakeImaging imaging;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  outcome.status = NavoraMain::main(arguments, imaging, [&] {
    ++outcome.applicationRuns;
    return applicationStatus;
  });
  outcome.output = testing::internal::GetCapturedStdout();
  outcome.errors = testing::internal::GetCapturedStderr();
  return outcome;
}

const Outcome applicationRan{applicationStatus, 1, "", ""};
const Outcome selfTestsPassed{
    0, 0,
    "PASS: desktop navigation policy (17 checks)\nPASS: quick capture "
    "policy (11 checks)\nPASS: native locale policy (3 checks)\nPASS: "
    "Navora menu bar icon (transparent corners, visible mark, template)\n",
    ""};

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
                               "self-test", " --self-test", "--self-test ", "--self", ""})
    EXPECT_EQ(run({"navora", argument}), applicationRan) << argument;
}

TEST(NavoraMain, DoesNotDependOnTheConfiguredOrigin) {
  ASSERT_EQ(setenv("NAVORA_URL", "https://preview.example", 1), 0);
  EXPECT_EQ(run({"navora", "--self-test"}), selfTestsPassed);
  unsetenv("NAVORA_URL");
}

}  // namespace
}  // namespace navora
