#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "fakes/FakeMainWindow.h"
#include "hosts/linux/window/ColorScheme.h"
#include "hosts/linux/window/LinuxMainWindow.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"
#include "linux/support/Widgets.h"
#include "platform/MemoryUserDefaults.h"

namespace navora {

// Makes main windows on the test's desktop.
class WindowTest : public testing::Test {
 protected:
  static MainWindowDescription description() {
    return {"Title of the window", {1100, 760}, {700, 500}, "TestWindow"};
  }

  std::unique_ptr<LinuxMainWindow> makeWindow() {
    return std::make_unique<LinuxMainWindow>(description(), delegate_, defaults_, colorScheme_);
  }
  static testing::AssertionResult show(LinuxMainWindow& window) {
    window.makeKeyAndOrderFront();
    return waitUntil([&] { return isReadyForKeys(window.native()); });
  }

  driver::Display& display_ = TestDesktop::current().display();
  driver::Keyboard& keyboard_ = TestDesktop::current().keyboard();
  driver::Mouse& mouse_ = TestDesktop::current().mouse();
  FakeMainWindowDelegate delegate_;
  MemoryUserDefaults defaults_;
  ColorScheme colorScheme_;
};

}  // namespace navora
