#pragma once

#include <string>

#include "end_to_end/driver/BusConnection.h"

namespace navora::driver {

// Implements the sleep signal of org.freedesktop.login1.Manager on the desktop's private system
// bus.
class FakeLogind {
 public:
  explicit FakeLogind(const std::string& systemBusAddress);

  // Announce that the machine is about to sleep, and that it has resumed.
  void announceSleep() { announce(true); }
  void announceWake() { announce(false); }

 private:
  void announce(bool goingToSleep);

  BusConnection bus_;
};

}  // namespace navora::driver
