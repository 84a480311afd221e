#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

// One small file of the application's own data, which only the user may read. Every change is
// atomic, and writes and removals are on the disk when the function returns, so that neither a
// crash nor a power cut leaves half a change.
//
// The functions block, may be called on any thread and must not be called at the same time.
class PrivateFile {
 public:
  // The content, or nullopt if there is no file.
  using Content = Expected<std::optional<std::string>, PlatformError>;

  virtual ~PrivateFile() = default;

  virtual Content read() const = 0;
  // Replaces the content, and creates the file if there is none. Returns nullopt for success. After
  // an error either the old or the new content is there, never a mixture.
  virtual std::optional<PlatformError> write(std::string_view content) = 0;
  // Deletes the file and whatever an interrupted write left behind. Succeeds if neither exists.
  virtual std::optional<PlatformError> remove() = 0;
  // Renames the file, so that a later write does not destroy its content. Returns the new name; a
  // file that was set aside earlier is replaced. Fails if there is no file.
  virtual Expected<std::string, PlatformError> setAside() = 0;
};

}  // namespace navora
