#include <memory>

#include <gtest/gtest.h>

#include "end_to_end/driver/FakeLogind.h"
#include "end_to_end/driver/OtherWindow.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::driver {
namespace {

// One desktop for all tests, and a new sample window for each.
class DesktopDriverTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { desktop_ = std::make_unique<VirtualDesktop>(); }
  static void TearDownTestSuite() { desktop_.reset(); }

  void SetUp() override {
    logind_ = std::make_unique<FakeLogind>(desktop_->systemBusAddress());
    program_ = desktop_->start({SAMPLE_WINDOW});
    program_->waitForLine("ready");
    window_ = desktop_->display().waitForWindow(
        [this](const WindowInfo& info) { return info.pid == program_->pid() && info.mapped; },
        "the sample window is shown");
    desktop_->display().waitUntilActive(window_.id);
    desktop_->openedUrls().clear();
  }

  void TearDown() override {
    if (HasFailure()) {
      desktop_->display().screenshot().save("driver-failure.png");
      GTEST_LOG_(INFO) << program_->outputText() << program_->errorText();
    }
    program_.reset();
  }

  AccessibleObject widget(const std::string& role, const std::string& name = {}) {
    return desktop_->accessibility().waitFor({.role = role, .name = name}, program_->pid());
  }

  // Clicks the entry, types and submits text, and returns what the program received.
  std::string typed(const std::string& text) {
    desktop_->mouse().click(widget("text").extents().center());
    desktop_->keyboard().type(text + "\n");
    return program_->waitForLine("entered ");
  }

  static std::unique_ptr<VirtualDesktop> desktop_;
  std::unique_ptr<FakeLogind> logind_;
  std::unique_ptr<ChildProcess> program_;
  WindowInfo window_;
};

std::unique_ptr<VirtualDesktop> DesktopDriverTest::desktop_;

TEST_F(DesktopDriverTest, TypedAsciiTextArrivesUnchanged) {
  const std::string text = "Hello, World! a+b=c <{[(~`|\\/@#$%^&*_-\"';:.?)]}> 0123456789";
  EXPECT_EQ(typed(text), text);
}

TEST_F(DesktopDriverTest, TypedUnicodeTextArrivesUnchanged) {
  const std::string text =
      "Съешь ещё этих мягких французских булок, да выпей чаю — «ёж» äöüß ñ 日本 😀";
  EXPECT_EQ(typed(text), text);
}

TEST_F(DesktopDriverTest, TheKeyboardMapsManyAlphabets) {
  for (const std::string text :
       {"абвгдеёжзийклмнопрстуфхцчшщъыьэюя", "АБВГДЕЁЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ",
        "àâæçéèêëîïôœùûüÿñãõíóúáßÄÖÜ«»„“”’…–—€№", "日本語のテキスト入力を確認する"}) {
    EXPECT_EQ(typed(text), text);
    widget("text").setText("");
  }
}

TEST_F(DesktopDriverTest, ChordsArriveWithTheirModifiers) {
  desktop_->keyboard().chord("Control+Shift+space");
  EXPECT_NO_THROW(program_->waitForLine("key <Primary><Shift>space"));
  desktop_->keyboard().chord("Alt+Left");
  EXPECT_NO_THROW(program_->waitForLine("key <Alt>Left"));
  desktop_->keyboard().chord("Control++");
  EXPECT_NO_THROW(program_->waitForLine("key <Primary><Shift>plus"));
}

TEST_F(DesktopDriverTest, ClicksHitTheExactPixelWithTheChosenButton) {
  const Rectangle swatch = widget("drawing area", "Swatch").extents();
  desktop_->mouse().click({swatch.x + 17, swatch.y + 23}, MouseButton::middle);
  EXPECT_EQ(program_->waitForLine("pressed 2 at "), "17,23");
  {
    Keyboard::Hold control(desktop_->keyboard(), "Control");
    desktop_->mouse().click({swatch.x + 5, swatch.y + 6});
  }
  EXPECT_EQ(program_->waitForLine("pressed 1 with Control at "), "5,6");
}

TEST_F(DesktopDriverTest, ScreenshotsAreTrueToColour) {
  const Rectangle swatch = widget("drawing area", "Swatch").extents();
  const PixelColor pink{200, 40, 120};
  waitUntil(
      [&] {
        const Screenshot shot = desktop_->display().screenshot(swatch);
        return shot.pixel({2, 2}) == pink && shot.pixel({swatch.width - 2, 2}).blue == 255;
      },
      "the swatch has its two colours");
  const Screenshot shot = desktop_->display().screenshot(swatch);
  EXPECT_EQ(shot.average({0, 0, swatch.width / 2 - 1, swatch.height}), pink);
  EXPECT_FALSE(shot.blank());
  EXPECT_TRUE(shot.cropped({0, 0, swatch.width / 2 - 1, swatch.height}).blank());
  EXPECT_EQ(shot.differingPixels(shot), 0U);
  EXPECT_GT(
      shot.differingPixels(desktop_->display().screenshot({0, 0, swatch.width, swatch.height})),
      0U);
  const auto file = desktop_->root() / "swatch.png";
  shot.save(file);
  EXPECT_EQ(readFile(file).substr(1, 3), "PNG");
}

TEST_F(DesktopDriverTest, DialogsAreFoundAndAnsweredThroughAccessibility) {
  desktop_->mouse().click(widget("push button", "Ask").extents().center());
  const AccessibleObject dialog = widget("alert");
  EXPECT_EQ(desktop_->accessibility().waitFor({.role = "label", .name = "Really?"}, dialog).text(),
            "Really?");
  EXPECT_TRUE(desktop_->accessibility()
                  .find({.role = "label", .name = "The second line"}, dialog)
                  .has_value());
  EXPECT_FALSE(desktop_->accessibility().find({.role = "push button", .name = "Absent"}, dialog));
  desktop_->accessibility().waitFor({.role = "push button", .name = "Proceed"}, dialog).press();
  EXPECT_EQ(program_->waitForLine("answered "), "Proceed");
  waitUntil([&] { return !desktop_->accessibility().find({.role = "alert"}, program_->pid()); },
            "the dialog is closed");
}

TEST_F(DesktopDriverTest, TextsOfEntriesAreReadAndWrittenThroughAccessibility) {
  const AccessibleObject entry = widget("text");
  entry.setText("écrit");
  EXPECT_EQ(entry.text(), "écrit");
  EXPECT_TRUE(entry.has(AccessibleState::editable));
  entry.focus();
  waitUntil([&] { return entry.has(AccessibleState::focused); }, "the entry has the focus");
}

TEST_F(DesktopDriverTest, OpenedAddressesAreRecorded) {
  widget("push button", "Open links").press();
  program_->waitForLine("opened");
  waitUntil([&] { return desktop_->openedUrls().all().size() == 2; },
            "both addresses are recorded");
  auto urls = desktop_->openedUrls().all();
  std::sort(urls.begin(), urls.end());
  EXPECT_EQ(urls, (std::vector<std::string>{"https://elsewhere.example/a?b=c&d=%20#e",
                                            "mailto:someone@example.com"}));
}

TEST_F(DesktopDriverTest, WindowsReportTheirTypesAndStates) {
  EXPECT_EQ(window_.title, "Driver sample – окно");
  EXPECT_TRUE(window_.hasType("_NET_WM_WINDOW_TYPE_NORMAL"));
  EXPECT_GE(window_.content.width, 300);
  EXPECT_TRUE(desktop_->display().window(window_.id)->active);
}

TEST_F(DesktopDriverTest, AWindowIsMinimisedAndRestored) {
  Display& display = desktop_->display();
  display.minimise(window_.id);
  waitUntil([&] { return display.window(window_.id)->minimised; }, "the window is minimised");
  EXPECT_FALSE(display.window(window_.id)->mapped);
  display.activate(window_.id);
  waitUntil([&] { return display.window(window_.id)->mapped; }, "the window is shown again");
  EXPECT_FALSE(display.window(window_.id)->minimised);
}

TEST_F(DesktopDriverTest, AWindowIsResized) {
  Display& display = desktop_->display();
  display.resize(window_.id, 640, 480);
  waitUntil([&] { return display.window(window_.id)->content.width == 640; }, "the width is 640");
  EXPECT_EQ(display.window(window_.id)->content.height, 480);
}

TEST_F(DesktopDriverTest, AWindowIsClosedThroughTheWindowManager) {
  desktop_->display().close(window_.id);
  program_->waitForLine("closed");
  EXPECT_EQ(program_->wait(), (ChildProcess::ExitStatus{0, 0}));
}

TEST_F(DesktopDriverTest, SleepAndWakeReachPrograms) {
  logind_->announceSleep();
  EXPECT_NO_THROW(program_->waitForLine("going to sleep"));
  logind_->announceWake();
  EXPECT_NO_THROW(program_->waitForLine("woken"));
}

TEST_F(DesktopDriverTest, FailedWaitsReportTheState) {
  try {
    desktop_->accessibility().waitFor({.role = "push button", .name = "Absent"}, program_->pid(),
                                      std::chrono::milliseconds(50));
    FAIL() << "found what is not there";
  } catch (const TestError& error) {
    const std::string message = error.what();
    EXPECT_NE(message.find("a push button named \"Absent\" is on the screen"), std::string::npos);
    EXPECT_NE(message.find("push button \"Ask\""), std::string::npos) << message;
  }
}

// Other driver tests start a program first, and are too slow to reveal this race.
TEST(FreshDesktopTest, ItsWindowManagerManagesTheFirstWindow) {
  VirtualDesktop::Options options;
  options.accessibility = false;
  VirtualDesktop desktop(options);
  const OtherWindow first(desktop.display());
  EXPECT_TRUE(desktop.display().window(first.id())->active);
}

}  // namespace
}  // namespace navora::driver
