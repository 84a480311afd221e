#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/CommandLine.h"

namespace navora {
namespace {

using Action = CommandLine::Action;
using Arguments = std::vector<std::string>;

CommandLine parsed(const Arguments& arguments, CommandLineStyle style = CommandLineStyle::strict) {
  const auto commandLine = parseCommandLine(arguments, style);
  EXPECT_TRUE(commandLine.hasValue());
  return commandLine ? *commandLine : CommandLine{};
}

std::string unknown(const Arguments& arguments, CommandLineStyle style = CommandLineStyle::strict) {
  const auto commandLine = parseCommandLine(arguments, style);
  return commandLine ? "nothing" : commandLine.error();
}

TEST(CommandLineTest, WithoutArgumentsRunsTheApplication) {
  EXPECT_EQ(parsed({}), (CommandLine{Action::runApplication, LaunchPurpose::application}));
}

TEST(CommandLineTest, KnowsItsOptions) {
  EXPECT_EQ(parsed({"--capture"}), (CommandLine{Action::runApplication, LaunchPurpose::capture}));
  EXPECT_EQ(parsed({"--help"}).action, Action::showHelp);
  EXPECT_EQ(parsed({"--version"}).action, Action::showVersion);
  EXPECT_EQ(parsed({"--self-test"}).action, Action::runSelfTests);
}

TEST(CommandLineTest, TheSelfTestTakesPrecedenceOverEverything) {
  EXPECT_EQ(parsed({"--help", "--bogus", "--self-test", "more"}).action, Action::runSelfTests);
}

TEST(CommandLineTest, NamesTheFirstUnknownArgument) {
  EXPECT_EQ(unknown({"--help", "--bogus", "--worse"}), "--bogus");
  EXPECT_EQ(unknown({"--Capture"}), "--Capture");
  EXPECT_EQ(unknown({"--capture=now"}), "--capture=now");
  EXPECT_EQ(unknown({"-h"}), "-h");
  EXPECT_EQ(unknown({"note.txt"}), "note.txt");
  EXPECT_EQ(unknown({""}), "");
}

TEST(CommandLineTest, OnMacOSIgnoresWhatTheSystemPasses) {
  const Arguments fromTheSystem{"-NSDocumentRevisionsDebugMode", "YES", "-psn_0_123"};
  EXPECT_EQ(parsed(fromTheSystem, CommandLineStyle::macos), CommandLine{});
  EXPECT_EQ(unknown({"--bogus"}, CommandLineStyle::macos), "--bogus");
}

TEST(CommandLineTest, OnMacOSHasNoOptionForThePanel) {
  EXPECT_EQ(unknown({"--capture"}, CommandLineStyle::macos), "--capture");
  EXPECT_EQ(commandLineHelp(CommandLineStyle::macos).find("--capture"), std::string::npos);
}

TEST(CommandLineTest, TheHelpListsEveryOptionInLinesThatFitATerminal) {
  const std::string help = commandLineHelp(CommandLineStyle::strict);
  for (const char* option : {"--capture", "--self-test", "--help", "--version", "NAVORA_URL",
                             "NAVORA_DEBUG", "NAVORA_DEBUG_HOTKEY"})
    EXPECT_NE(help.find(option), std::string::npos) << option;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);)
    EXPECT_LE(line.size(), 80U) << line;
  EXPECT_EQ(help.back(), '\n');
}

}  // namespace
}  // namespace navora
