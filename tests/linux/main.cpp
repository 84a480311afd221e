#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <gtkmm/main.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include "end_to_end/driver/VirtualDesktop.h"
#include "linux/support/TestDesktop.h"

namespace {

using navora::driver::Environment;
using navora::driver::VirtualDesktop;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (auto& text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Starts this program again with only the given environment and returns its exit status. Libraries
// read some variables only once, and the caller's environment must not affect the tests.
int runAgain(std::vector<std::string> arguments, const Environment& environment) {
  std::vector<std::string> variables;
  for (const auto& [name, value] : environment)
    variables.push_back(name + "=" + value);
  pid_t child = 0;
  if (posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, pointersTo(arguments).data(),
                  pointersTo(variables).data()) != 0) {
    std::cerr << "The tests could not be started\n";
    return EXIT_FAILURE;
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  std::cerr << "The tests were terminated by signal " << WTERMSIG(status) << "\n";
  return EXIT_FAILURE;
}

int runOnDesktop(const std::vector<std::string>& arguments) {
  VirtualDesktop::Options options;
  options.accessibility = false;
  const VirtualDesktop desktop(options);
  Environment environment = desktop.environment();
  environment[navora::TestDesktop::folderVariable] = desktop.root();
  for (const char* name :
       {"GTEST_COLOR", "GTEST_OUTPUT", "GTEST_SHARD_INDEX", "GTEST_TOTAL_SHARDS",
        "TEST_PREMATURE_EXIT_FILE", "NAVORA_TEST_TIMEOUT_FACTOR", "NAVORA_BANNER_PICTURES"}) {
    if (const char* value = std::getenv(name)) environment[name] = value;
  }
  return runAgain(arguments, environment);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv, argv + argc);
  testing::InitGoogleTest(&argc, argv);
  const bool onDesktop = std::getenv(navora::TestDesktop::folderVariable) != nullptr;
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  if (!onDesktop) return runOnDesktop(arguments);

  prctl(PR_SET_PDEATHSIG, SIGKILL);
  gtk_init(&argc, &argv);
  Gtk::Main::init_gtkmm_internals();
  return RUN_ALL_TESTS();
}
