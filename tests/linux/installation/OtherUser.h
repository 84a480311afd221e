#pragma once

#include <cstdlib>
#include <functional>

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace navora {

// The user `nobody`, who has no privileges.
inline constexpr uid_t nobody = 65534;

// Evaluates `condition` in another process, as the user `nobody` if this is root, so that file
// permissions apply. Returns false if that process fails.
inline bool isTrueWithoutPrivileges(const std::function<bool()>& condition) {
  const pid_t process = ::fork();
  if (process == 0) {
    const bool isBound = ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 &&
                                              ::setgid(nobody) == 0 && ::setuid(nobody) == 0);
    ::_exit(isBound && condition() ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  int status = 0;
  return process > 0 && ::waitpid(process, &status, 0) == process && WIFEXITED(status) &&
         WEXITSTATUS(status) == EXIT_SUCCESS;
}

}  // namespace navora
