#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "end_to_end/driver/EndToEndTest.h"
#include "end_to_end/driver/Executables.h"
#include "end_to_end/driver/Files.h"

namespace navora::driver {
namespace {

using Arguments = std::vector<std::string>;

constexpr const char* everyLine =
    "PASS: desktop navigation policy (17 checks)\n"
    "PASS: quick capture policy (11 checks)\n"
    "PASS: native locale policy (3 checks)\n"
    "PASS: Navora menu bar icon (transparent corners, visible mark, template)\n";

constexpr ChildProcess::ExitStatus success{0, 0};

// The program where there is no desktop at all: no display, no bus, an empty home.
class SelfTestCommandTest : public testing::Test {
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
  TemporaryDirectory folder_{"navora-self-test"};
};

TEST_F(SelfTestCommandTest, PrintsItsLinesAndEndsWithSuccessWithoutADesktop) {
  expectSelfTest({"--self-test"});
}

TEST_F(SelfTestCommandTest, IsChosenByTheArgumentAtAnyPosition) {
  expectSelfTest({"--self-test", "more"});
  expectSelfTest({"more", "--self-test"});
  expectSelfTest({"--unknown", "--self-test=1", "--self-test", "--self-test", ""});
}

TEST_F(SelfTestCommandTest, LeavesNothingBehind) {
  run({"--self-test"});
  EXPECT_TRUE(std::filesystem::is_empty(home()));
}

// What the tests above rest on: anything but the self-test needs a display.
TEST_F(SelfTestCommandTest, TheApplicationItselfDoesNotRunWithoutADisplay) {
  const auto outcome = run({});
  EXPECT_NE(outcome.status, success);
  EXPECT_EQ(outcome.output, "");
  EXPECT_NE(outcome.errors.find("display"), std::string::npos) << outcome.errors;
}

struct NearMiss {
  const char* name;
  const char* argument;
};

class SelfTestNearMissTest : public EndToEndTest, public testing::WithParamInterface<NearMiss> {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.arguments = {GetParam().argument}};
  }
};

TEST_P(SelfTestNearMissTest, StartsTheApplication) {
  EXPECT_EQ(application().waitForMainWindow().title, "Navora");
  EXPECT_EQ(page().path(), "/login");
  EXPECT_EQ(application().process().outputText(), "");
}

INSTANTIATE_TEST_SUITE_P(Argument, SelfTestNearMissTest,
                         testing::Values(NearMiss{"InOtherCase", "--Self-Test"},
                                         NearMiss{"WithAValue", "--self-test=1"},
                                         NearMiss{"WithOneDash", "-self-test"},
                                         NearMiss{"WithASpace", "--self-test "}),
                         [](const auto& nearMiss) { return nearMiss.param.name; });

}  // namespace
}  // namespace navora::driver
