#include <gmock/gmock.h>
#include <gtkmm/entry.h>

#include "fakes/FakeMainWindow.h"
#include "linux/banner/UpdateBannerTest.h"
#include "linux/web/WebViewTest.h"
#include "tests/support/HttpServer.h"

namespace navora {
namespace {

using testing::ElementsAre;
using Button = UpdateBannerButton;

class LinuxUpdateBannerFocusTest : public UpdateBannerTest {
 protected:
  Gtk::Widget* focus() { return window_->native().get_focus(); }
  testing::AssertionResult focusAfter(const char* key, Gtk::Widget& expected) {
    keyboard_.chord(key);
    return waitUntil([&] { return focus() == &expected; });
  }
};

TEST_F(LinuxUpdateBannerFocusTest, DoesNotTakeTheFocus) {
  ASSERT_TRUE(showBanner(offer()));
  EXPECT_EQ(focus(), &page_);
  banner_->setContent(downloading());
  banner_->setProgress(UpdateBannerProgress::indeterminate());
  EXPECT_EQ(focus(), &page_);
  banner_->setHidden(true);
  EXPECT_EQ(focus(), &page_);
}

TEST_F(LinuxUpdateBannerFocusTest, LeavesTheFocusWhereItIsWhenClicked) {
  ASSERT_TRUE(showBanner(offer()));
  mouse_.click(onScreen(button(Button::secondary)).center());
  ASSERT_TRUE(waitUntil([this] { return delegateOfBanner_.presses.size() == 1; }));
  EXPECT_EQ(focus(), &page_);
}

TEST_F(LinuxUpdateBannerFocusTest, TabVisitsTheButtonsAndReturnsToThePage) {
  ASSERT_TRUE(showBanner(offer()));
  std::vector<Gtk::Widget*> order;
  for (int step = 0; step < 5; ++step) {
    Gtk::Widget* before = focus();
    keyboard_.chord("Tab");
    ASSERT_TRUE(waitUntil([&] { return focus() != before; })) << step;
    order.push_back(focus());
  }
  EXPECT_THAT(order, ElementsAre(&button(Button::close), &button(Button::primary),
                                 &button(Button::secondary), &button(Button::tertiary), &page_));
  EXPECT_TRUE(focusAfter("Shift+Tab", button(Button::tertiary)));
}

TEST_F(LinuxUpdateBannerFocusTest, F6MovesTheFocusToTheBannerAndBack) {
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(focusAfter("F6", button(Button::close)));
  EXPECT_TRUE(focusAfter("F6", page_));
}

TEST_F(LinuxUpdateBannerFocusTest, F6RestoresTheFocusedWidget) {
  Gtk::Entry entry;
  entry.set_valign(Gtk::ALIGN_END);
  entry.show();
  window_->overlay().add_overlay(entry);
  entry.grab_focus();
  ASSERT_TRUE(showBanner(downloading()));
  ASSERT_TRUE(focusAfter("F6", button(Button::secondary)));
  ASSERT_TRUE(focusAfter("F6", entry));
  ASSERT_TRUE(focusAfter("F6", button(Button::secondary)));
  entry.hide();
  banner_->setHidden(true);
  EXPECT_FALSE(banner_->card().containsFocus());
}

TEST_F(LinuxUpdateBannerFocusTest, F6ReachesThePageWithoutABannerOrButtons) {
  int presses = 0;
  page_.add_events(Gdk::KEY_PRESS_MASK);
  page_.signal_key_press_event().connect([&](GdkEventKey* event) {
    presses += event->keyval == GDK_KEY_F6 ? 1 : 0;
    return true;
  });
  keyboard_.chord("F6");
  ASSERT_TRUE(waitUntil([&] { return presses == 1; }));
  ASSERT_TRUE(showBanner(downloading("")));
  keyboard_.chord("F6");
  ASSERT_TRUE(waitUntil([&] { return presses == 2; }));
  banner_->setContent(offer());
  keyboard_.chord("Shift+F6");
  ASSERT_TRUE(waitUntil([&] { return presses == 3; }));
  EXPECT_EQ(focus(), &page_);
}

TEST_F(LinuxUpdateBannerFocusTest, RestoresTheFocusWhenHidden) {
  ASSERT_TRUE(showBanner(offer()));
  button(Button::primary).grab_focus();
  banner_->setHidden(true);
  EXPECT_EQ(focus(), &page_);
}

TEST_F(LinuxUpdateBannerFocusTest, HoldsTheFocusWithoutPressingTheNextButton) {
  delegateOfBanner_.onPress = [this](Button) { banner_->setContent(disabled(offer())); };
  ASSERT_TRUE(showBanner(offer()));
  button(Button::primary).grab_focus();
  keyboard_.chord("Return");
  ASSERT_TRUE(waitUntil([this] { return delegateOfBanner_.presses.size() == 1; }));
  EXPECT_EQ(focus(), &banner_->card());
  banner_->setContent(downloading());
  EXPECT_EQ(focus(), &banner_->card());
  keyboard_.chord("Return");
  ASSERT_TRUE(focusAfter("Tab", button(Button::secondary)));
  EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(Button::primary));
  ASSERT_TRUE(focusAfter("Tab", page_));
  EXPECT_TRUE(focusAfter("Tab", button(Button::secondary)));
  banner_->setHidden(true);
  EXPECT_EQ(focus(), &page_);
}

TEST_F(LinuxUpdateBannerFocusTest, RestoresTheFocusAfterEscape) {
  delegateOfBanner_.onPress = [this](Button) { banner_->setHidden(true); };
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(focusAfter("F6", button(Button::close)));
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitUntil([this] { return banner_->isHidden(); }));
  EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(Button::close));
  EXPECT_EQ(focus(), &page_);
}

// A banner over a web view, which has a focus of its own.
class LinuxUpdateBannerPageTest : public WebViewTest {
 protected:
  using Button = UpdateBannerButton;

  void SetUp() override {
    ASSERT_TRUE(
        loadHtml("<body><button id=one>1</button><textarea id=text></textarea>"
                 "<script>let clicks = 0; addEventListener('click', () => ++clicks);"
                 "</script></body>"));
    window_.setContentView(view_);
    banner_.setDelegate(&delegate_);
    banner_.attach(window_);
    UpdateBannerContent content;
    content.title = "Title";
    content.button(Button::secondary).title = "Cancel";
    content.button(Button::secondary).visible = true;
    banner_.setContent(content);
    window_.makeKeyAndOrderFront();
    ASSERT_TRUE(waitUntil([this] { return isReadyForKeys(window_.native()); }));
    run("document.getElementById('one').focus()");
    ASSERT_TRUE(waitUntil([this] { return active() == "one"; }));
  }

  std::string active() { return evaluate("document.activeElement.id").get<std::string>(); }
  bool onPage() { return window_.native().get_focus()->gobj() == pageWidget(); }
  GtkWidget* pageWidget() { return view_->widget(); }
  Gtk::Button& cancel() { return banner_.button(Button::secondary).widget(); }

  driver::Keyboard& keyboard_ = TestDesktop::current().keyboard();
  driver::Mouse& mouse_ = TestDesktop::current().mouse();
  FakeMainWindowDelegate windowDelegate_;
  RecordingBannerDelegate delegate_;
  MemoryUserDefaults defaults_;
  ColorScheme colorScheme_;
  LinuxMainWindow window_{
      {"Window", {900, 600}, {700, 500}, "Window"}, windowDelegate_, defaults_, colorScheme_};
  LinuxUpdateBanner banner_;
};

TEST_F(LinuxUpdateBannerPageTest, ThePageKeepsTheFocusWhenTheBannerAppears) {
  run("document.getElementById('text').focus()");
  ASSERT_TRUE(waitUntil([this] { return active() == "text"; }));
  keyboard_.type("ab");
  banner_.setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return isLaidOut(banner_.card()); }));
  keyboard_.type("cd");
  EXPECT_TRUE(waitUntil(
      [this] { return evaluate("document.getElementById('text').value") == Json("abcd"); }));
  mouse_.click(onScreen(cancel()).center());
  ASSERT_TRUE(waitUntil([this] { return delegate_.presses.size() == 1; }));
  keyboard_.type("e");
  EXPECT_TRUE(waitUntil(
      [this] { return evaluate("document.getElementById('text').value") == Json("abcde"); }));
}

TEST_F(LinuxUpdateBannerPageTest, TabReturnsToThePage) {
  run("document.getElementById('text').focus()");
  banner_.setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return isLaidOut(banner_.card()); }));
  keyboard_.chord("F6");
  ASSERT_TRUE(waitUntil([this] { return cancel().has_focus(); }));
  keyboard_.chord("Tab");
  ASSERT_TRUE(waitUntil([this] { return onPage(); }));
  keyboard_.type("x");
  EXPECT_TRUE(
      waitUntil([this] { return evaluate("document.getElementById('text').value") == Json("x"); }));
}

TEST_F(LinuxUpdateBannerPageTest, F6LeavesAPageThatPreventsTab) {
  run("addEventListener('keydown', event => event.preventDefault())");
  banner_.setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return isLaidOut(banner_.card()); }));
  keyboard_.chord("Tab");
  keyboard_.chord("F6");
  ASSERT_TRUE(waitUntil([this] { return cancel().has_focus(); }));
  keyboard_.chord("F6");
  ASSERT_TRUE(waitUntil([this] { return onPage(); }));
  EXPECT_EQ(active(), "one");
}

TEST_F(LinuxUpdateBannerPageTest, ClicksOutsideTheCardReachThePage) {
  banner_.setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return isLaidOut(banner_.card()); }));
  const auto card = onScreen(banner_.card());
  mouse_.click({card.x + 1, card.y + 1});
  ASSERT_TRUE(waitUntil([this] { return evaluate("clicks") == Json(1); }));
  mouse_.click({card.x + 20, card.y + 20});
  mouse_.click({card.x - 3, card.y + 20});
  EXPECT_TRUE(waitUntil([this] { return evaluate("clicks") == Json(2); }));
}

}  // namespace
}  // namespace navora
