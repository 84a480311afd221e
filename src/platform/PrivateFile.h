#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

// One small file of the application's own data, which only the user may read. Every change is
// atomic and on the disk when the function returns, so that neither a crash nor a power cut leaves
// half of it.
//
// The functions block, may be called on any thread and must not be called at the same time.
class PrivateFile {
 public:
  // The content, nullopt if there is no file.
  using Content = Expected<std::optional<std::string>, PlatformError>;

  virtual ~PrivateFile() = default;

  virtual Content read() const = 0;
  // Replaces the content. Returns the error, after which the old content is still there.
  virtual std::optional<PlatformError> write(std::string_view content) = 0;
  // Deletes the file and whatever an interrupted write has left. Succeeds if there is none.
  virtual std::optional<PlatformError> remove() = 0;
  // Renames the file, so that a later write does not destroy its content. Returns the new name.
  virtual Expected<std::string, PlatformError> setAside() = 0;
};

}  // namespace navora
