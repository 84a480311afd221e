#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace navora {

// Exit status of a program, or minus the number of the signal that killed it.
int waitFor(pid_t process);

// Starts a program with variables added to this process's environment. Appends its standard error
// to the file `errors`.
pid_t startProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& variables,
                   const std::filesystem::path& errors = "/dev/null");

// Makes this process the subreaper of orphaned descendants, so that they can be waited for.
void adoptOrphans();
// Waits until all started and adopted processes have exited.
void waitForAll();

}  // namespace navora
