#include "hosts/linux/application/ApplicationVersion.h"

namespace navora {

std::string applicationVersion() {
  return applicationVersion(Installation::ofThisProgram());
}

std::string applicationVersion(const std::optional<Installation>& installation) {
  return installation ? installation->version() : NAVORA_VERSION;
}

}  // namespace navora
