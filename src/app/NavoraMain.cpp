#include "app/NavoraMain.h"

#include <cstdlib>
#include <iostream>

#include "app/NavoraIcon.h"
#include "capture/QuickCapturePolicy.h"
#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"
#include "support/FatalError.h"

namespace navora {
namespace {

// The usual exit status for an invalid command line.
constexpr int usageError = 2;

void runSelfTests(Imaging& imaging) {
  DesktopOrigin::selfTest();
  QuickCapturePolicy::selfTest();
  DesktopLocale::selfTest();
  NavoraIcon::selfTest(imaging);
}

}  // namespace

int NavoraMain::main(const std::vector<std::string>& arguments, const Program& program) {
  const auto first = arguments.begin() + (arguments.empty() ? 0 : 1);
  const auto commandLine = parseCommandLine({first, arguments.end()}, program.style);
  if (!commandLine) {
    std::cerr << "navora: unknown argument \"" << commandLine.error()
              << "\"; \"navora --help\" lists the options\n";
    return usageError;
  }
  switch (commandLine->action) {
    case CommandLine::Action::runApplication:
      return program.runApplication(commandLine->purpose);
    case CommandLine::Action::runSelfTests:
      runSelfTests(program.imaging);
      return EXIT_SUCCESS;
    case CommandLine::Action::showHelp:
      std::cout << commandLineHelp(program.style);
      return EXIT_SUCCESS;
    case CommandLine::Action::showVersion:
      std::cout << "navora " << program.version() << '\n';
      return EXIT_SUCCESS;
  }
  fatalError("Unknown action of the command line", "App", __LINE__);
}

}  // namespace navora
