#pragma once

#include <filesystem>
#include <string>

#include "end_to_end/driver/Display.h"
#include "end_to_end/driver/Keyboard.h"
#include "end_to_end/driver/Mouse.h"
#include "end_to_end/driver/OpenedUrls.h"

namespace navora {

// The virtual desktop that this process runs on.
class TestDesktop {
 public:
  // Environment variable with the desktop's folder, set by the process that started it.
  static constexpr const char* folderVariable = "NAVORA_TEST_DESKTOP";

  static TestDesktop& current();

  driver::Display& display() { return display_; }
  driver::Keyboard& keyboard() { return keyboard_; }
  driver::Mouse& mouse() { return mouse_; }
  driver::OpenedUrls& openedUrls() { return openedUrls_; }
  static std::string sessionBusAddress();
  static std::string systemBusAddress();

 private:
  TestDesktop();

  driver::Display display_;
  driver::Keyboard keyboard_;
  driver::Mouse mouse_;
  driver::OpenedUrls openedUrls_;
};

}  // namespace navora
