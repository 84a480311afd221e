#include "hosts/linux/ApplicationVersion.h"

#include "hosts/linux/update/Installation.h"

namespace navora {

std::string applicationVersion() {
  const auto installation = Installation::ofThisProgram();
  return installation ? installation->version() : NAVORA_VERSION;
}

}  // namespace navora
