#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace navora {

// What a program came to: its exit code, or the signal that ended it as a negative number.
int waitFor(pid_t process);

// Starts a program with the variables added to those of this process. What it says of errors goes
// to the end of the file `errors`.
pid_t startProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& variables,
                   const std::filesystem::path& errors = "/dev/null");

// Makes whatever programs leave behind this process's own, so that it can be waited for.
void adoptOrphans();
// Waits for the end of all that were started or adopted.
void waitForAll();

}  // namespace navora
