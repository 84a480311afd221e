#pragma once

#include <string>

#include "platform/PlatformError.h"

namespace navora {

inline constexpr const char* updateErrorDomain = "NavoraUpdateErrorDomain";

// The steps in which an update can fail.
enum class UpdateStage { feed, download, verification, unpacking, installation, relaunch };

// Returns an error whose text is "stage: description", for the log. `description` is a sentence
// without a full stop.
PlatformError updateError(UpdateStage stage, const std::string& description);
// The same with the text of `errorNumber`, an errno value, in parentheses.
PlatformError systemUpdateError(UpdateStage stage, const std::string& description, int errorNumber);

}  // namespace navora
