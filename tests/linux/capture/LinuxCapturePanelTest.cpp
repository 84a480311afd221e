#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

#include <glibmm/main.h>
#include <gmock/gmock.h>
#include <gtkmm/entry.h>
#include <xcb/xcb.h>

#include "fakes/FakeMainWindow.h"
#include "hosts/linux/window/LinuxMainWindow.h"
#include "linux/capture/CapturePanelTest.h"
#include "platform/MemoryUserDefaults.h"

namespace navora {
namespace {

using testing::Contains;
using testing::SizeIs;

// Another program that holds the keyboard until it is destroyed.
class KeyboardGrab {
 public:
  explicit KeyboardGrab(driver::Display& display) : connection_(display.name()) {
    const driver::XReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
        connection_.get(),
        xcb_grab_keyboard(connection_.get(), 0, connection_.root(), XCB_CURRENT_TIME,
                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS)
      throw TestError("The keyboard cannot be grabbed");
  }

  void release() {
    xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
    connection_.synchronize();
  }

 private:
  driver::XConnection connection_;
};

// Returns how often the main loop had something to do in this time.
int wakeUpsIn(std::chrono::milliseconds time) {
  int wakeUps = 0;
  bool over = false;
  Glib::signal_timeout().connect_once([&] { over = true; }, static_cast<unsigned>(time.count()));
  for (; !over; ++wakeUps)
    g_main_context_iteration(nullptr, TRUE);
  return wakeUps;
}

class LinuxCapturePanelTest : public CapturePanelTest {
 protected:
  driver::Rectangle buttonOnDisplay() { return onScreen(panel_->submitButton()); }
};

TEST_F(LinuxCapturePanelTest, StartsHidden) {
  runPendingEvents();
  EXPECT_FALSE(panel_->isVisible());
  EXPECT_EQ(panel_->frame(), (Rectangle{200, 300, 600, 165}));
}

TEST_F(LinuxCapturePanelTest, OpensAtItsFrameWithTheKeyboardFocus) {
  ASSERT_TRUE(open());
  const int screenHeight = display_.connection().screen().height_in_pixels;
  EXPECT_EQ(onDisplay(), (driver::Rectangle{200, screenHeight - 300 - 165, 600, 165}));
  const auto info = infoOf(panel_->native());
  EXPECT_TRUE(info.hasType("_NET_WM_WINDOW_TYPE_UTILITY"));
  EXPECT_TRUE(info.hasState("_NET_WM_STATE_ABOVE"));
  EXPECT_TRUE(info.hasState("_NET_WM_STATE_SKIP_TASKBAR"));
  keyboard_.type("Hello");
  EXPECT_TRUE(waitForText("Hello"));
  EXPECT_THAT(delegate_.keys, SizeIs(testing::Ge(5)));
}

TEST_F(LinuxCapturePanelTest, ReportsNothingWhileItIsDestroyed) {
  ASSERT_TRUE(open());
  panel_.reset();
  runPendingEvents();
  EXPECT_TRUE(delegate_.focused);
  EXPECT_EQ(delegate_.resignations, 0);
}

TEST_F(LinuxCapturePanelTest, ReturnsTheVisibleFrameOfItsScreen) {
  const auto& screen = display_.connection().screen();
  ASSERT_TRUE(panel_->screenVisibleFrame().has_value());
  EXPECT_GT(panel_->screenVisibleFrame()->height, 0);
  EXPECT_LE(panel_->screenVisibleFrame()->maxY(), screen.height_in_pixels);
  panel_->setFrame({screen.width_in_pixels + 100.0, 300, 600, 165});
  EXPECT_FALSE(panel_->screenVisibleFrame().has_value());
}

TEST_F(LinuxCapturePanelTest, OpensOverAFullScreenWindow) {
  Gtk::Window fullScreen;
  fullScreen.fullscreen();
  fullScreen.show();
  fullScreen.present();
  ASSERT_TRUE(waitUntil([&] {
    return isReadyForKeys(fullScreen) && infoOf(fullScreen).hasState("_NET_WM_STATE_FULLSCREEN");
  }));
  ASSERT_TRUE(open());
  EXPECT_TRUE(waitUntil([&] { return shot().pixel({300, 5}) == driver::PixelColor{255, 0, 0}; }));
}

TEST_F(LinuxCapturePanelTest, OpensAtTheSameFrameAgain) {
  for (int time = 0; time < 3; ++time) {
    ASSERT_TRUE(open());
    EXPECT_EQ(onDisplay().x, 200);
    EXPECT_EQ(panel_->frame(), (Rectangle{200, 300, 600, 165}));
    panel_->orderOut();
    ASSERT_TRUE(waitUntil([&] { return !infoOf(panel_->native()).mapped; }));
  }
  EXPECT_EQ(delegate_.resignations, 0);
}

TEST_F(LinuxCapturePanelTest, IgnoresCoordinatesRelativeToTheWindowManagersFrame) {
  ASSERT_TRUE(open());
  GdkEvent* event = gdk_event_new(GDK_CONFIGURE);
  event->configure.window = GDK_WINDOW(g_object_ref(panel_->native().get_window()->gobj()));
  event->configure.width = 600;
  event->configure.height = 165;
  gtk_widget_event(GTK_WIDGET(panel_->native().gobj()), event);
  gdk_event_free(event);
  EXPECT_EQ(panel_->frame(), (Rectangle{200, 300, 600, 165}));
}

TEST_F(LinuxCapturePanelTest, GrowsDownwardsAndKeepsItsTopEdge) {
  ASSERT_TRUE(open());
  const driver::Rectangle before = onDisplay();
  panel_->setLayout({.padding = 24, .editorHeight = 158, .messageHeight = 14});
  panel_->setFrame({200, 200, 600, 265});
  ASSERT_TRUE(waitUntil([&] { return onDisplay().height == 265; }));
  EXPECT_EQ(onDisplay().x, before.x);
  EXPECT_EQ(onDisplay().y, before.y);
  panel_->setLayout({.padding = 24, .editorHeight = 58, .messageHeight = 14});
  panel_->setFrame({200, 300, 600, 165});
  ASSERT_TRUE(waitUntil([&] { return onDisplay().height == 165; }));
  EXPECT_EQ(onDisplay(), before);
}

TEST_F(LinuxCapturePanelTest, IsShownAboveAnActiveWindowThatKeepsTheKeyboard) {
  Gtk::Window other;
  Gtk::Entry entry;
  other.add(entry);
  other.set_default_size(900, 700);
  other.show_all();
  other.present();
  ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(other); }));
  for (int time = 1; time <= 2; ++time) {
    panel_->orderFront();
    ASSERT_TRUE(waitUntil([&] {
      const auto info = infoOf(panel_->native());
      return info.mapped && info.hasState("_NET_WM_STATE_ABOVE") &&
             shot().pixel({300, 5}) == driver::PixelColor{255, 0, 0};
    }));
    EXPECT_EQ(panel_->frame(), (Rectangle{200, 300, 600, 165}));
    keyboard_.type("x");
    ASSERT_TRUE(waitUntil([&] { return entry.get_text() == std::string(time, 'x'); }));
    EXPECT_EQ(panel_->editor().text(), "");
    panel_->orderOut();
    ASSERT_TRUE(waitUntil([&] { return !infoOf(panel_->native()).mapped; }));
    EXPECT_TRUE(isReadyForKeys(other));
  }
  EXPECT_EQ(delegate_.resignations, 0);
  // Showing it without the keyboard does not affect how it is shown the next time.
  ASSERT_TRUE(open());
}

TEST_F(LinuxCapturePanelTest, DoesNotRaiseTheMainWindow) {
  MemoryUserDefaults defaults;
  FakeMainWindowDelegate windowDelegate;
  LinuxMainWindow main({"Main", {500, 400}, {300, 200}, "Main"}, windowDelegate, defaults,
                       colorScheme_);
  main.makeKeyAndOrderFront();
  ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(main.native()); }));
  Gtk::Window other;
  other.set_title("Other");
  other.set_default_size(500, 400);
  other.show();
  other.present();
  ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(other); }));
  ASSERT_TRUE(open());
  const auto windows = display_.windows();
  const auto place = [&](Gtk::Window& window) {
    return std::ranges::find(windows, infoOf(window).id, &driver::WindowInfo::id) - windows.begin();
  };
  EXPECT_LT(place(main.native()), place(other));
  EXPECT_LT(place(other), place(panel_->native()));
}

TEST_F(LinuxCapturePanelTest, ReportsThatAnotherWindowTookTheFocus) {
  ASSERT_TRUE(open());
  Gtk::Window other;
  other.set_title("Other");
  other.show();
  other.present();
  EXPECT_TRUE(waitUntil([&] { return delegate_.resignations == 1; }));
  EXPECT_FALSE(delegate_.focused);
}

TEST_F(LinuxCapturePanelTest, IgnoresAMomentaryKeyboardGrab) {
  ASSERT_TRUE(open());
  KeyboardGrab grab(display_);
  ASSERT_TRUE(waitUntil([&] { return !delegate_.focused; }));
  int ticks = 0;
  Glib::signal_timeout().connect([&] { return ++ticks < 20; }, 10);
  ASSERT_TRUE(waitUntil([&] { return ticks == 20; }));
  grab.release();
  EXPECT_TRUE(waitUntil([&] { return delegate_.focused; }));
  EXPECT_EQ(delegate_.resignations, 0);
}

// As a screen locker does.
TEST_F(LinuxCapturePanelTest, SleepsWhileAnotherProgramHoldsTheKeyboard) {
  ASSERT_TRUE(open());
  KeyboardGrab grab(display_);
  ASSERT_TRUE(waitUntil([&] { return !delegate_.focused; }));
  // The rest of what the loss of the focus causes.
  for (int time = 0; time < 20 && wakeUpsIn(std::chrono::milliseconds(100)) > 1; ++time) {
  }
  EXPECT_LE(wakeUpsIn(std::chrono::milliseconds(600)), 2);
  EXPECT_EQ(delegate_.resignations, 0);
  grab.release();
  ASSERT_TRUE(waitUntil([&] { return delegate_.focused; }));
  keyboard_.type("x");
  EXPECT_TRUE(waitForText("x"));
  EXPECT_EQ(delegate_.resignations, 0);
}

TEST_F(LinuxCapturePanelTest, ReportsAWindowThatBecomesActiveWhileTheKeyboardIsGrabbed) {
  Gtk::Window other;
  other.show();
  other.present();
  ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(other); }));
  ASSERT_TRUE(open());
  KeyboardGrab grab(display_);
  ASSERT_TRUE(waitUntil([&] { return !delegate_.focused; }));
  display_.activate(infoOf(other).id);
  EXPECT_TRUE(waitUntil([&] { return delegate_.resignations == 1; }));
  grab.release();
  runPendingEvents();
  EXPECT_EQ(delegate_.resignations, 1);
}

TEST_F(LinuxCapturePanelTest, ReportsOnceThatItHasLostTheKeyboard) {
  Gtk::Window one;
  Gtk::Window two;
  one.show();
  two.show();
  ASSERT_TRUE(open());
  for (Gtk::Window* window : {&one, &two, &one}) {
    window->present();
    ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(*window); }));
  }
  runPendingEvents();
  EXPECT_EQ(delegate_.resignations, 1);
  ASSERT_TRUE(open());
  panel_->orderOut();
  two.present();
  ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(two); }));
  runPendingEvents();
  EXPECT_EQ(delegate_.resignations, 1);
}

TEST_F(LinuxCapturePanelTest, TreatsAWindowManagersCloseAsEscape) {
  ASSERT_TRUE(open());
  display_.close(infoOf(panel_->native()).id);
  EXPECT_TRUE(waitUntil(
      [&] { return std::ranges::count(delegate_.keys, KeyEvent{KeyEvent::escapeKey, 0}) == 1; }));
  EXPECT_TRUE(panel_->isVisible());
}

TEST_F(LinuxCapturePanelTest, OffersEveryKeyToTheDelegateFirst) {
  ASSERT_TRUE(open());
  keyboard_.chord("Shift+Return");
  ASSERT_TRUE(waitForText("\n"));
  delegate_.swallowedKey = KeyEvent::returnKey;
  keyboard_.chord("Return");
  keyboard_.chord("Control+Return");
  keyboard_.chord("Control+KP_Enter");
  keyboard_.type("x");
  ASSERT_TRUE(waitUntil([&] { return panel_->editor().text().ends_with("x"); }));
  EXPECT_THAT(delegate_.keys, Contains(KeyEvent{KeyEvent::returnKey, KeyEvent::control}));
  EXPECT_THAT(delegate_.keys, Contains(KeyEvent{KeyEvent::keypadEnterKey, KeyEvent::control}));
  EXPECT_THAT(delegate_.keys, Contains(KeyEvent{KeyEvent::returnKey, KeyEvent::shift}));
}

TEST_F(LinuxCapturePanelTest, ReportsHoverAndPressOfTheRoundButton) {
  panel_->setSubmitEnabled(true);
  ASSERT_TRUE(open());
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(panel_->submitButton()); }));
  const auto place = buttonOnDisplay();
  EXPECT_EQ(place.width, 38);
  EXPECT_EQ(place.height, 38);
  EXPECT_EQ(place.x, onDisplay().x + 600 - 24 - 38);
  EXPECT_EQ(place.y, onDisplay().y + 165 - 24 - 38);
  ASSERT_TRUE(waitUntil([&] {
    const auto button = display_.screenshot(place);
    return button.pixel({19, 19}) == driver::PixelColor{0, 255, 0} &&
           button.pixel({1, 1}) == driver::PixelColor{255, 0, 0};
  }));
  mouse_.moveTo(place.center());
  EXPECT_TRUE(waitUntil([&] { return delegate_.hovered; }));
  mouse_.click(place.center());
  EXPECT_TRUE(waitUntil([&] { return delegate_.presses == 1; }));
  mouse_.moveTo({place.x - 100, place.y});
  EXPECT_TRUE(waitUntil([&] { return !delegate_.hovered; }));
}

TEST_F(LinuxCapturePanelTest, AClickOnTheButtonLeavesTheKeyboardWithTheEditor) {
  panel_->setSubmitEnabled(true);
  ASSERT_TRUE(open());
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(panel_->submitButton()); }));
  mouse_.click(buttonOnDisplay().center());
  ASSERT_TRUE(waitUntil([&] { return delegate_.presses == 1; }));
  panel_->setSubmitEnabled(false);
  panel_->setSubmitEnabled(true);
  EXPECT_TRUE(panel_->textView().has_focus());
  keyboard_.type("x");
  EXPECT_TRUE(waitForText("x"));
}

TEST_F(LinuxCapturePanelTest, ReportsNoPressOfADisabledButton) {
  panel_->setSubmitEnabled(false);
  ASSERT_TRUE(open());
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(panel_->submitButton()); }));
  mouse_.click(buttonOnDisplay().center());
  keyboard_.type("x");
  ASSERT_TRUE(waitForText("x"));
  EXPECT_EQ(delegate_.presses, 0);
}

TEST_F(LinuxCapturePanelTest, TabInsertsATab) {
  panel_->setSubmitEnabled(true);
  ASSERT_TRUE(open());
  keyboard_.type("a\tb");
  EXPECT_TRUE(waitForText("a\tb"));
  EXPECT_TRUE(panel_->textView().has_focus());
}

TEST_F(LinuxCapturePanelTest, ControlTabAndShiftTabMoveTheFocusToTheButtonAndBack) {
  panel_->setSubmitEnabled(true);
  ASSERT_TRUE(open());
  for (const char* toButton : {"Control+Tab", "Shift+Tab"}) {
    for (const char* back : {"Control+Tab", "Shift+Tab", "Tab"}) {
      keyboard_.chord(toButton);
      ASSERT_TRUE(waitUntil([&] { return panel_->submitButton().has_focus(); })) << toButton;
      keyboard_.chord(back);
      ASSERT_TRUE(waitUntil([&] { return panel_->textView().has_focus(); })) << back;
    }
  }
  panel_->setSubmitEnabled(false);
  keyboard_.chord("Control+Tab");
  keyboard_.chord("Shift+Tab");
  keyboard_.type("x");
  EXPECT_TRUE(waitForText("x"));
}

TEST_F(LinuxCapturePanelTest, IsOperatedFromTheButtonByKeys) {
  panel_->setSubmitEnabled(true);
  ASSERT_TRUE(open());
  keyboard_.chord("Control+Tab");
  ASSERT_TRUE(waitUntil([&] { return panel_->submitButton().has_focus(); }));
  keyboard_.chord("space");
  EXPECT_TRUE(waitUntil([&] { return delegate_.presses == 1; }));
  keyboard_.chord("Escape");
  EXPECT_TRUE(waitUntil(
      [&] { return std::ranges::count(delegate_.keys, KeyEvent{KeyEvent::escapeKey, 0}) == 1; }));
  keyboard_.chord("Shift+Tab");
  EXPECT_TRUE(waitUntil([&] { return panel_->textView().has_focus(); }));
  EXPECT_EQ(panel_->editor().text(), "");
}

TEST_F(LinuxCapturePanelTest, SetsAccessibleNames) {
  panel_->setSubmitAccessibilityLabel("Save the note");
  panel_->editor().setAccessibilityLabel("New note");
  EXPECT_EQ(panel_->submitButton().get_accessible()->get_name(), "Save the note");
  EXPECT_EQ(panel_->textView().get_accessible()->get_name(), "New note");
}

TEST_F(LinuxCapturePanelTest, ReplacesTheMacsModifierSymbols) {
  panel_->setMessage("⌘+Enter sends");
  panel_->setSubmitToolTip("Save with ⌘+Enter or ⌘⇧Space, ⌘");
  EXPECT_EQ(panel_->message().get_text(), "Ctrl+Enter sends");
  EXPECT_EQ(panel_->submitButton().get_tooltip_text(),
            "Save with Ctrl+Enter or Ctrl+Shift+Space, Ctrl");
}

TEST_F(LinuxCapturePanelTest, MeasuresTheWrappedMessage) {
  panel_->setMessageColor({0, 0, 0, 1});
  panel_->setMessage("One line");
  const double line = panel_->messageTextHeight(500);
  EXPECT_GE(line, 12);
  EXPECT_LE(line, 20);
  panel_->setMessage("A message that is much too long for a line of so few pixels as these are");
  EXPECT_GE(panel_->messageTextHeight(200), 2 * line);
  panel_->setMessage("<b>no markup</b>");
  EXPECT_EQ(panel_->message().get_text(), "<b>no markup</b>");
}

struct LongMessage {
  const char* name;
  std::string text;
};

class LongMessageTest : public LinuxCapturePanelTest,
                        public testing::WithParamInterface<LongMessage> {
 protected:
  // Lays the panel out as the core does.
  void layOut(double width) {
    panel_->setFrame({200, 300, width, 165});
    const double messageWidth = width - 2 * 24 - 61;
    const double height = std::clamp(std::ceil(panel_->messageTextHeight(messageWidth)), 14.0,
                                     CapturePanelView::maximumMessageHeight);
    panel_->setLayout({.padding = 24, .editorHeight = 58, .messageHeight = height});
    panelHeight_ = 58 + 2 * 24 + 21 + std::max(height, 38.0);
    panel_->setFrame({200, 465 - panelHeight_, width, panelHeight_});
  }

  double panelHeight_ = 0;
};

TEST_P(LongMessageTest, WrapsWithinTheFrameAndIsClippedAtItsHeight) {
  panel_->setMessageColor({0, 0, 1, 1});
  panel_->setMessage(GetParam().text);
  for (const int width : {800, 660}) {
    layOut(width);
    ASSERT_TRUE(open());
    ASSERT_TRUE(waitUntil([&] {
      const auto place = onDisplay();
      return place.width == width && place.height == static_cast<int>(panelHeight_) &&
             shot().pixelsLike({0, 0, 255}, 60) > 100;
    })) << onDisplay().width
        << " x " << onDisplay().height;
    const auto card = shot();
    const driver::Rectangle button = buttonOnDisplay();
    const int right = button.x - onDisplay().x - 18;
    const int top = button.center().y - onDisplay().y - 50;
    int outside = 0;
    for (int y = 0; y < card.height(); ++y) {
      for (int x = 0; x < card.width(); ++x) {
        const auto color = card.pixel({x, y});
        const bool isInk = color.blue > 120 && color.red < 120;
        const bool isInside = x >= 24 + 5 && x < right && y >= top && y < top + 100;
        if (isInk && !isInside) ++outside;
      }
    }
    EXPECT_EQ(outside, 0);
    EXPECT_EQ(panel_->frame().width, width);
    panel_->orderOut();
    ASSERT_TRUE(waitUntil([&] { return !infoOf(panel_->native()).mapped; }));
  }
}

std::string repeatedWords(const std::string& word, std::size_t length) {
  std::string text;
  while (text.size() < length)
    text += word;
  return text;
}

INSTANTIATE_TEST_SUITE_P(
    Of, LongMessageTest,
    testing::Values(LongMessage{"German",
                                "Der vorherige Sendeversuch wurde nicht bestätigt. Sende ihn "
                                "erneut oder stelle den vorher gesendeten Text wieder her, bevor "
                                "du weiterschreibst."},
                    LongMessage{"ManyWords",
                                repeatedWords("The service is not available. ", 2'000)},
                    LongMessage{"OneWord", std::string(300, 'W')}),
    [](const auto& message) { return message.param.name; });

TEST_F(LinuxCapturePanelTest, ShapesItsCornersWithoutACompositor) {
  Gtk::Window below;
  below.override_background_color(Gdk::RGBA("#0000ff"));
  below.set_default_size(900, 700);
  below.show();
  below.present();
  ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(below); }));
  below.move(100, 100);
  ASSERT_TRUE(open());
  EXPECT_TRUE(waitUntil([&] {
    const auto card = shot();
    return card.pixel({1, 1}) == driver::PixelColor{0, 0, 255} &&
           card.pixel({300, 5}) == driver::PixelColor{255, 0, 0} &&
           card.pixel({599, 164}) == driver::PixelColor{0, 0, 255};
  }));
  panel_->setLayout({.padding = 24, .editorHeight = 158, .messageHeight = 14});
  panel_->setFrame({200, 200, 600, 265});
  EXPECT_TRUE(waitUntil([&] {
    const auto card = shot();
    return card.height() == 265 && card.pixel({1, 1}) == driver::PixelColor{0, 0, 255} &&
           card.pixel({599, 264}) == driver::PixelColor{0, 0, 255};
  }));
}

TEST_F(LinuxCapturePanelTest, ShowsATranslucentCardWithoutACompositor) {
  delegate_.cardAlpha = 0.1;
  panel_->redrawSurface();
  ASSERT_TRUE(open());
  mouse_.click({onDisplay().x + 300, onDisplay().y + 60});
  keyboard_.type("x");
  EXPECT_TRUE(waitForText("x"));
  // Blended with black.
  EXPECT_TRUE(waitUntil([&] {
    const auto color = shot().pixel({300, 5});
    return color.red > 70 && color.green == 0 && color.blue == 0;
  }));
}

TEST_F(LinuxCapturePanelTest, HasNoDarkEdgesWithoutACompositor) {
  ASSERT_TRUE(open());
  ASSERT_TRUE(waitUntil([&] { return shot().pixel({300, 5}) == driver::PixelColor{255, 0, 0}; }));
  const auto card = shot();
  // Checks the leftmost pixel of the card in every row of the rounded corner.
  int edges = 0;
  for (int y = 0; y < 20; ++y) {
    for (int x = 0; x < 20; ++x) {
      const auto color = card.pixel({x, y});
      const bool isCard = color.green == 0 && color.blue == 0 && color.red > 0;
      if (!isCard) continue;
      EXPECT_GT(color.red, 220) << x << ", " << y;
      ++edges;
      break;
    }
  }
  EXPECT_GT(edges, 15);
}

TEST_F(LinuxCapturePanelTest, IsDraggedByItsBackground) {
  ASSERT_TRUE(open());
  const driver::Rectangle before = onDisplay();
  const driver::Point grip{before.x + 300, before.y + 8};
  mouse_.moveTo(grip);
  mouse_.press();
  mouse_.moveTo({grip.x + 30, grip.y + 20});
  mouse_.moveTo({grip.x + 60, grip.y + 40});
  ASSERT_TRUE(waitUntil([&] {
    mouse_.moveTo({grip.x + 60, grip.y + 40});
    return onDisplay().x == before.x + 60;
  }));
  mouse_.release();
  EXPECT_EQ(onDisplay().y, before.y + 40);
  EXPECT_TRUE(waitUntil([&] { return panel_->frame() == (Rectangle{260, 260, 600, 165}); }));
  EXPECT_EQ(delegate_.resignations, 0);
}

}  // namespace
}  // namespace navora
