#include "end_to_end/driver/FakeLogind.h"

namespace navora::driver {

FakeLogind::FakeLogind(const std::string& systemBusAddress) : bus_(systemBusAddress) {
  bus_.ownName("org.freedesktop.login1");
}

void FakeLogind::announce(bool goingToSleep) {
  bus_.emitSignal("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                  g_variant_new("(b)", goingToSleep ? TRUE : FALSE));
}

}  // namespace navora::driver
