#include "hosts/linux/installation/UpdateError.h"

#include <system_error>

namespace navora {
namespace {

std::string nameOf(UpdateStage stage) {
  switch (stage) {
    case UpdateStage::feed:
      return "feed";
    case UpdateStage::download:
      return "download";
    case UpdateStage::verification:
      return "verification";
    case UpdateStage::unpacking:
      return "unpacking";
    case UpdateStage::installation:
      return "installation";
    case UpdateStage::relaunch:
      return "relaunch";
  }
  return "update";
}

}  // namespace

PlatformError updateError(UpdateStage stage, const std::string& description) {
  return {updateErrorDomain, static_cast<int>(stage), nameOf(stage) + ": " + description};
}

PlatformError systemUpdateError(UpdateStage stage, const std::string& description,
                                int errorNumber) {
  return updateError(stage,
                     description + " (" + std::generic_category().message(errorNumber) + ")");
}

}  // namespace navora
