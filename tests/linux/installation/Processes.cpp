#include "linux/installation/Processes.h"

#include <cerrno>

#include <fcntl.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace navora {
namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

int waitFor(pid_t process) {
  int status = 0;
  pid_t ended = 0;
  do {
    ended = ::waitpid(process, &status, 0);
  } while (ended < 0 && errno == EINTR);
  if (ended != process) return -1000;
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

pid_t startProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& variables,
                   const std::filesystem::path& errors) {
  std::vector<std::string> words{program.string()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> environment;
  for (const auto& [name, value] : variables)
    environment.push_back(name + "=" + value);
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    if (!variables.contains(text.substr(0, text.find('=')))) environment.push_back(text);
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                   O_WRONLY | O_CREAT | O_APPEND, 0600);
  pid_t process = -1;
  const int error = ::posix_spawn(&process, program.c_str(), &actions, nullptr,
                                  pointersTo(words).data(), pointersTo(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : -1;
}

void adoptOrphans() {
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}

void waitForAll() {
  while (::waitpid(-1, nullptr, 0) > 0 || errno == EINTR) {
  }
}

}  // namespace navora
