#pragma once

#include <string>

#include "end_to_end/driver/BusConnection.h"

namespace navora::driver {

// Stands for the login manager on the desktop's private system bus, as far as sleep goes.
class FakeLogind {
 public:
  explicit FakeLogind(const std::string& systemBusAddress);

  // Announces that the machine is about to sleep, and that it has woken up.
  void announceSleep() { announce(true); }
  void announceWake() { announce(false); }

 private:
  void announce(bool goingToSleep);

  BusConnection bus_;
};

}  // namespace navora::driver
