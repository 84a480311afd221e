#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <gtkmm/window.h>

#include "fakes/FakeCapturePanelView.h"
#include "linux/capture/CapturePanelTest.h"

namespace navora {
namespace {

// Tests the contract of CapturePanelView and CaptureEditorView with the fake and the Linux
// implementation.
class PanelOnPaper {
 public:
  explicit PanelOnPaper(RecordingPanelDelegate& delegate)
      : panel_(log_, desktop_, {600, 165}, delegate) {}

  CapturePanelView& panel() { return panel_; }
  bool hasKeyboard() const { return panel_.isKey(); }
  void activateAnotherWindow() {
    if (panel_.isKey()) panel_.clickElsewhere();
  }
  void clickInEditor() { panel_.clickInEditor(); }
  void compose(const std::string& text) { panel_.editor().compose(text); }

 private:
  EventLog log_;
  FakeCapturePanelView::Desktop desktop_;
  FakeCapturePanelView panel_;
};

class PanelOnLinux {
 public:
  explicit PanelOnLinux(RecordingPanelDelegate& delegate)
      : panel_({600, 165}, delegate, colorScheme_) {
    panel_.setLayout({.padding = 24, .editorHeight = 58, .messageHeight = 14});
    panel_.setFrame({200, 300, 600, 165});
    other_.set_default_size(100, 100);
    other_.show();
    activateAnotherWindow();
  }

  CapturePanelView& panel() { return panel_; }
  bool hasKeyboard() { return isReadyForKeys(panel_.native()); }
  void activateAnotherWindow() {
    other_.present();
    EXPECT_TRUE(waitUntil([&] { return isReadyForKeys(other_); }));
  }
  void clickInEditor() {
    EXPECT_TRUE(
        waitUntil([&] { return infoOf(panel_.native()).mapped && isLaidOut(panel_.textView()); }));
    TestDesktop::current().mouse().click(onScreen(panel_.textView()).center());
  }
  void compose(const std::string& text) {
    g_signal_emit_by_name(panel_.textView().gobj(), "preedit-changed", text.c_str());
  }

 private:
  ColorScheme colorScheme_;
  LinuxCapturePanel panel_;
  Gtk::Window other_;
};

template <typename Implementation>
class CapturePanelContractTest : public testing::Test {
 protected:
  CapturePanelView& panel() { return implementation_.panel(); }
  CaptureEditorView& editor() { return panel().editor(); }
  testing::AssertionResult waitForKeyboard() {
    return waitUntil([&] { return implementation_.hasKeyboard() && delegate_.focused; });
  }
  void open() {
    panel().makeKeyAndOrderFront();
    editor().makeFirstResponder();
    ASSERT_TRUE(waitForKeyboard());
  }
  // Waits until the window manager has handled what was asked of it before.
  void settle() {
    implementation_.activateAnotherWindow();
    runPendingEvents();
  }

  RecordingPanelDelegate delegate_;
  Implementation implementation_{delegate_};
};

using CapturePanels = testing::Types<PanelOnPaper, PanelOnLinux>;
TYPED_TEST_SUITE(CapturePanelContractTest, CapturePanels);

TYPED_TEST(CapturePanelContractTest, OrderFrontShowsThePanelWithoutTheKeyboard) {
  this->panel().orderFront();
  this->editor().makeFirstResponder();
  EXPECT_TRUE(this->panel().isVisible());
  this->settle();
  EXPECT_TRUE(this->panel().isVisible());
  EXPECT_FALSE(this->implementation_.hasKeyboard());
  EXPECT_EQ(this->delegate_.resignations, 0);
}

TYPED_TEST(CapturePanelContractTest, TakesTheKeyboardWhenItIsMadeKeyAfterwards) {
  this->panel().orderFront();
  this->settle();
  this->open();
  EXPECT_EQ(this->delegate_.resignations, 0);
}

TYPED_TEST(CapturePanelContractTest, TakesTheKeyboardWhenTheUserClicksInIt) {
  this->panel().orderFront();
  this->settle();
  this->implementation_.clickInEditor();
  EXPECT_TRUE(this->waitForKeyboard());
  this->implementation_.activateAnotherWindow();
  EXPECT_TRUE(waitUntil([&] { return this->delegate_.resignations == 1; }));
}

TYPED_TEST(CapturePanelContractTest, OrderFrontLeavesTheKeyboardToAPanelThatHasIt) {
  this->open();
  this->panel().orderFront();
  runPendingEvents();
  EXPECT_TRUE(this->waitForKeyboard());
  EXPECT_EQ(this->delegate_.resignations, 0);
}

TYPED_TEST(CapturePanelContractTest, IsOrderedOutWithoutEverHavingHadTheKeyboard) {
  this->panel().orderFront();
  this->settle();
  this->panel().orderOut();
  EXPECT_FALSE(this->panel().isVisible());
  this->settle();
  EXPECT_EQ(this->delegate_.resignations, 0);
}

TYPED_TEST(CapturePanelContractTest, CommitsWhatIsBeingComposedOnce) {
  this->open();
  this->implementation_.compose("かな");
  this->editor().commitComposition();
  EXPECT_EQ(this->editor().text(), "かな");
  EXPECT_EQ(this->delegate_.textChanges, 1);
  this->editor().commitComposition();
  EXPECT_EQ(this->editor().text(), "かな");
  EXPECT_EQ(this->delegate_.textChanges, 1);
}

TYPED_TEST(CapturePanelContractTest, ClearDiscardsWhatIsBeingComposed) {
  this->open();
  this->implementation_.compose("かな");
  this->editor().clear();
  this->editor().commitComposition();
  EXPECT_EQ(this->editor().text(), "");
  EXPECT_EQ(this->delegate_.textChanges, 0);
}

}  // namespace
}  // namespace navora
