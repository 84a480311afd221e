#include "app/CommandLine.h"

#include <algorithm>

namespace navora {
namespace {

bool isError(const std::string& argument, CommandLineStyle style) {
  return style == CommandLineStyle::strict || argument.starts_with("--");
}

}  // namespace

Expected<CommandLine, std::string> parseCommandLine(const std::vector<std::string>& arguments,
                                                    CommandLineStyle style) {
  if (std::ranges::find(arguments, "--self-test") != arguments.end())
    return CommandLine{.action = CommandLine::Action::runSelfTests};
  CommandLine commandLine;
  for (const std::string& argument : arguments) {
    if (argument == "--help") {
      commandLine.action = CommandLine::Action::showHelp;
    } else if (argument == "--version") {
      commandLine.action = CommandLine::Action::showVersion;
    } else if (argument == "--capture" && style == CommandLineStyle::strict) {
      commandLine.purpose = LaunchPurpose::capture;
    } else if (isError(argument, style)) {
      return Unexpected(argument);
    }
  }
  return commandLine;
}

std::string commandLineHelp(CommandLineStyle style) {
  std::string help =
      "Usage: navora [OPTION]\n"
      "Shows your notes in a window of their own.\n"
      "\n";
  if (style == CommandLineStyle::strict)
    help += "  --capture    Open the quick capture panel; starts Navora if needed.\n";
  help +=
      "  --self-test  Check the built-in rules without a display.\n"
      "  --help       Print this text.\n"
      "  --version    Print the version.\n"
      "\n"
      "Environment:\n"
      "  NAVORA_URL           The service: an https origin, or http on this machine.\n"
      "  NAVORA_DEBUG         Areas to log, separated by commas: navigation, capture,\n"
      "                       notifications, updates, hotkey; or all.\n"
      "  NAVORA_DEBUG_HOTKEY  1 reports the registration of the key combination.\n";
  return help;
}

}  // namespace navora
