#pragma once

#include <string>

#include "platform/PlatformError.h"

namespace navora {

inline constexpr const char* updateErrorDomain = "NavoraUpdateErrorDomain";

// Where an update can fail.
enum class UpdateStage { feed, download, verification, unpacking, installation, relaunch };

// With the stage's name first, for whoever reads the log. `description` is a sentence without its
// full stop.
PlatformError updateError(UpdateStage stage, const std::string& description);
// The same for a call of the system that has just failed, with its reason.
PlatformError systemUpdateError(UpdateStage stage, const std::string& description, int errorNumber);

}  // namespace navora
