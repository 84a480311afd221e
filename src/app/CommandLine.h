#pragma once

#include <string>
#include <vector>

#include "platform/Application.h"
#include "support/Expected.h"

namespace navora {

struct CommandLine {
  enum class Action { runApplication, runSelfTests, showHelp, showVersion };

  Action action = Action::runApplication;
  // Only read by runApplication.
  LaunchPurpose purpose = LaunchPurpose::application;

  bool operator==(const CommandLine&) const = default;
};

// The arguments that a platform passes beyond the options of the program.
enum class CommandLineStyle {
  // Only the program's own options; every other argument is an error.
  strict,
  // The platform adds arguments of its own ("-NSDocumentRevisionsDebugMode YES"), so only unknown
  // options that begin with two dashes are errors. The panel is opened by other means: there is no
  // "--capture".
  macos,
};

// Parses the arguments that follow the program's path. "--self-test" at any position selects the
// self-tests, whatever else is there. The error is the first argument that is not an option.
Expected<CommandLine, std::string> parseCommandLine(const std::vector<std::string>& arguments,
                                                    CommandLineStyle style);

// Returns the text that `--help` prints, with a line break at its end.
std::string commandLineHelp(CommandLineStyle style);

}  // namespace navora
