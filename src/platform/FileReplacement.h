#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "platform/PlatformError.h"

namespace navora {

// A new file that is written aside and then put at its destination in one step, so that a file
// there is either the old one or the complete new one at every moment, even if the process is
// killed or the power fails. Main thread only.
//
// Destroying the replacement deletes what was written, unless it was put in place, and waits for a
// putInPlace() that is running.
class FileReplacement {
 public:
  // Takes the reason why the new file is not at its destination, or nullopt if it is.
  using Completion = std::function<void(std::optional<PlatformError>)>;

  virtual ~FileReplacement() = default;

  // The file to create and write. It does not exist at first; no other user can read it before it
  // is in place.
  virtual const std::filesystem::path& file() const = 0;

  // Flushes the file to the disk and moves it to its destination. Called at most once, after the
  // file was closed. `completion` is called once, after the function has returned, unless the
  // replacement is destroyed first.
  //
  // An existing file is replaced only if it was there when the replacement was made, because the
  // user has agreed to lose no other; a symbolic link keeps leading to the file that is replaced.
  virtual void putInPlace(Completion completion) = 0;
};

}  // namespace navora
