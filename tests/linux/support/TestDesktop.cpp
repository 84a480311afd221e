#include "linux/support/TestDesktop.h"

#include "tests/support/Wait.h"

namespace navora {
namespace {

std::string environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr) throw TestError(std::string("The desktop has no ") + name);
  return value;
}

}  // namespace

TestDesktop& TestDesktop::current() {
  static TestDesktop desktop;
  return desktop;
}

std::string TestDesktop::sessionBusAddress() {
  return environmentVariable("DBUS_SESSION_BUS_ADDRESS");
}

std::string TestDesktop::systemBusAddress() {
  return environmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
}

TestDesktop::TestDesktop()
    : display_(environmentVariable("DISPLAY")),
      keyboard_(display_.connection()),
      mouse_(display_.connection()),
      openedUrls_(environmentVariable("XDG_DATA_HOME"), environmentVariable("XDG_CONFIG_HOME"),
                  std::filesystem::path(environmentVariable(folderVariable)) / "opened-urls") {}

}  // namespace navora
