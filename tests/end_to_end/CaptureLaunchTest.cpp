#include <algorithm>

#include <gtest/gtest.h>

#include "end_to_end/driver/EndToEndTest.h"

namespace navora::driver {
namespace {

bool isPanel(const WindowInfo& window) {
  return window.hasType("_NET_WM_WINDOW_TYPE_UTILITY");
}

class CaptureLaunchTest : public EndToEndTest {
 protected:
  void waitForPanel() {
    waitUntil(
        [this] {
          const auto windows = application().windows();
          return std::any_of(windows.begin(), windows.end(), isPanel);
        },
        "the capture panel is shown", defaultTimeout(),
        [this] { return desktop().display().describeWindows(); });
  }
};

TEST_F(CaptureLaunchTest, ASecondLaunchOpensThePanelOfTheRunningApplication) {
  const WindowInfo main = application().waitForMainWindow();
  desktop().display().close(main.id);
  application().waitUntilMainWindowHidden();
  const auto second = application().run({"--capture"});
  EXPECT_EQ(second.status, (ChildProcess::ExitStatus{0, 0})) << second.errors;
  EXPECT_EQ(second.errors, "");
  waitForPanel();
  EXPECT_FALSE(application().mainWindow()) << desktop().display().describeWindows();
}

class FirstCaptureLaunchTest : public CaptureLaunchTest {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.arguments = {"--capture"}};
  }
  // The fixture would wait for the focus in the main window, but the panel has it.
  bool startsApplication() const override { return false; }
};

TEST_F(FirstCaptureLaunchTest, StartsTheApplicationAndOpensThePanel) {
  application().start();
  application().waitForMainWindow();
  waitForPanel();
}

}  // namespace
}  // namespace navora::driver
