#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtkmm/box.h>
#include <gtkmm/entry.h>
#include <gtkmm/window.h>

#include "hosts/linux/keyboard/LinuxHotKeys.h"
#include "linux/support/TestDesktop.h"
#include "linux/support/Widgets.h"
#include "linux/web/WebViewTest.h"

namespace navora {
namespace {

using testing::ElementsAre;

// One window with a page that reports its keys, and one with a text field.
class LocalKeyMonitorTest : public WebViewTest {
 protected:
  void SetUp() override {
    makeView();
    gtk_container_add(GTK_CONTAINER(pageWindow_.gobj()), view_->widget());
    gtk_widget_show(view_->widget());
    pageWindow_.set_default_size(400, 300);
    fieldWindow_.set_default_size(300, 100);
    fieldWindow_.add(field_);
    field_.show();
    server_.serveHtml("/keys",
                      "<input id='field' autofocus><script>"
                      "const post = text => webkit.messageHandlers.notes.postMessage(text);"
                      "addEventListener('keydown', event => {"
                      "  if (['Space', 'F9'].includes(event.code)) post(event.code);"
                      "});</script>");
    ASSERT_TRUE(load("/keys"));
  }

  testing::AssertionResult show(Gtk::Window& window) {
    window.present();
    TestDesktop::current().display().activate(infoOf(window).id);
    return waitUntil([&] { return isReadyForKeys(window); });
  }
  testing::AssertionResult showPage() {
    auto ready = show(pageWindow_);
    if (!ready) return ready;
    gtk_widget_grab_focus(view_->widget());
    return waitUntil([this] {
      return evaluate("document.hasFocus() && document.activeElement.id === 'field'") == true;
    });
  }
  void monitorKeys(KeyEvent consumed = {}) {
    token_ = hotKeys_.addLocalKeyDownMonitor([this, consumed](const KeyEvent& event) {
      if (event.keyCode != KeyEvent::otherKey) seen_.push_back(event);
      return event == consumed;
    });
  }
  // Presses F9 and waits until it reaches the page; expects this many presses of the space bar
  // before it.
  testing::AssertionResult pageGetsSpaces(std::size_t count) {
    keyboard_.chord("F9");
    std::vector<std::string> expected(count, "\"Space\"");
    expected.emplace_back("\"F9\"");
    const auto arrived = waitUntil([&] {
      const auto bodies = messages_.bodies();
      return !bodies.empty() && bodies.back() == expected.back();
    });
    if (!arrived || messages_.bodies() == expected) return arrived;
    return testing::AssertionFailure() << testing::PrintToString(messages_.bodies());
  }

  static constexpr KeyEvent shortcut{KeyEvent::spaceKey, KeyEvent::command | KeyEvent::shift};

  driver::Keyboard& keyboard_ = TestDesktop::current().keyboard();
  Gtk::Window pageWindow_;
  Gtk::Window fieldWindow_;
  Gtk::Entry field_;
  LinuxHotKeys hotKeys_;
  std::unique_ptr<ObserverToken> token_;
  std::vector<KeyEvent> seen_;
};

TEST_F(LocalKeyMonitorTest, ConsumesAKeyBeforeThePage) {
  monitorKeys(shortcut);
  ASSERT_TRUE(showPage());
  keyboard_.chord("Control+Shift+space");
  EXPECT_TRUE(pageGetsSpaces(0));
  EXPECT_THAT(seen_, ElementsAre(shortcut));
}

TEST_F(LocalKeyMonitorTest, PassesOtherKeysOnToThePage) {
  monitorKeys(shortcut);
  ASSERT_TRUE(showPage());
  keyboard_.chord("space");
  keyboard_.chord("Control+Shift+Alt+space");
  keyboard_.chord("Control+Shift+Super+space");
  EXPECT_TRUE(pageGetsSpaces(3));
  EXPECT_THAT(
      seen_,
      ElementsAre(
          KeyEvent{KeyEvent::spaceKey, 0},
          KeyEvent{KeyEvent::spaceKey, KeyEvent::command | KeyEvent::shift | KeyEvent::option},
          KeyEvent{KeyEvent::spaceKey, KeyEvent::command | KeyEvent::shift | KeyEvent::control}));
}

TEST_F(LocalKeyMonitorTest, ReceivesTheKeysOfEveryWindow) {
  monitorKeys({KeyEvent::spaceKey, 0});
  ASSERT_TRUE(show(fieldWindow_));
  field_.grab_focus();
  keyboard_.type("a b");
  EXPECT_TRUE(waitUntil([this] { return field_.get_text() == "ab"; })) << field_.get_text();
  EXPECT_THAT(seen_, ElementsAre(KeyEvent{KeyEvent::spaceKey, 0}));
}

TEST_F(LocalKeyMonitorTest, ReportsCapsLock) {
  monitorKeys();
  ASSERT_TRUE(show(fieldWindow_));
  keyboard_.chord("Caps_Lock");
  keyboard_.chord("Control+Shift+space");
  keyboard_.chord("Caps_Lock");
  EXPECT_TRUE(waitUntil([this] { return !seen_.empty(); }));
  EXPECT_THAT(seen_, ElementsAre(KeyEvent{KeyEvent::spaceKey, KeyEvent::command | KeyEvent::shift |
                                                                  KeyEvent::capsLock}));
}

TEST_F(LocalKeyMonitorTest, ReceivesNothingAfterTheTokenIsDestroyed) {
  monitorKeys(shortcut);
  ASSERT_TRUE(showPage());
  token_.reset();
  keyboard_.chord("Control+Shift+space");
  EXPECT_TRUE(pageGetsSpaces(1));
  EXPECT_THAT(seen_, ElementsAre());
}

}  // namespace
}  // namespace navora
