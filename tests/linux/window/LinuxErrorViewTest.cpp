#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtkmm/button.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/label.h>

#include "hosts/linux/web/LinuxWebView.h"
#include "hosts/linux/window/LinuxErrorView.h"
#include "linux/web/WebViewTest.h"
#include "linux/window/WindowTest.h"

namespace navora {
namespace {

using testing::ElementsAre;

// A window whose content has a single colour and counts clicks.
class LinuxErrorViewTest : public WindowTest {
 protected:
  void SetUp() override {
    page_.override_background_color(Gdk::RGBA("#ff00ff"));
    page_.add_events(Gdk::BUTTON_PRESS_MASK);
    page_.signal_button_press_event().connect([this](GdkEventButton*) {
      ++clicksOnPage_;
      return true;
    });
    page_.show();
    window_->overlay().add(page_);
    ASSERT_TRUE(show(*window_));
  }

  ErrorViewDescription texts() {
    return {"Cannot load",     "The server does not answer", "Try Again",
            "Open in Browser", [this] { ++retries_; },       [this] { ++opened_; }};
  }
  void showView() {
    view_ = std::make_unique<LinuxErrorView>(*window_, texts());
    view_->setHidden(false);
    ASSERT_TRUE(waitUntil([this] { return isLaidOut(*button("Try Again")); }));
  }
  Gtk::Button* button(const std::string& title) {
    const auto buttons = visibleWidgetsOf<Gtk::Button>(window_->native());
    const auto found = std::ranges::find_if(
        buttons, [&](const Gtk::Button* candidate) { return candidate->get_label() == title; });
    return found == buttons.end() ? nullptr : *found;
  }
  std::vector<std::string> labels() {
    std::vector<std::string> shown;
    for (const Gtk::Label* label : visibleWidgetsOf<Gtk::Label>(window_->native()))
      shown.push_back(label->get_text());
    return shown;
  }
  std::size_t pixelsOfPage() {
    return display_.screenshot(onScreen(window_->overlay())).pixelsLike({255, 0, 255}, 40);
  }

  std::unique_ptr<LinuxMainWindow> window_ = makeWindow();
  Gtk::EventBox page_;
  int clicksOnPage_ = 0;
  int retries_ = 0;
  int opened_ = 0;
  std::unique_ptr<LinuxErrorView> view_;
};

TEST_F(LinuxErrorViewTest, IsHiddenAtFirst) {
  view_ = std::make_unique<LinuxErrorView>(*window_, texts());
  runPendingEvents();
  EXPECT_TRUE(view_->isHidden());
  EXPECT_THAT(labels(), ElementsAre());
}

TEST_F(LinuxErrorViewTest, CoversThePageCompletely) {
  ASSERT_TRUE(waitUntil([this] { return pixelsOfPage() > 0; }));
  showView();
  EXPECT_FALSE(view_->isHidden());
  EXPECT_TRUE(waitUntil([this] { return pixelsOfPage() == 0; }));
  view_->setHidden(true);
  EXPECT_TRUE(view_->isHidden());
  EXPECT_TRUE(waitUntil([this] { return pixelsOfPage() > 0; }));
}

TEST_F(LinuxErrorViewTest, ShowsItsTexts) {
  showView();
  EXPECT_THAT(labels(), ElementsAre("Cannot load", "The server does not answer", "Try Again",
                                    "Open in Browser"));
}

TEST_F(LinuxErrorViewTest, ShowsDetailsLiterally) {
  showView();
  view_->setDetail("<b>5 < 6 & \"7\"</b>");
  EXPECT_EQ(labels()[1], "<b>5 < 6 & \"7\"</b>");
  EXPECT_TRUE(waitUntil([this] { return pixelsOfPage() == 0; }));
}

TEST_F(LinuxErrorViewTest, LongDetailsDoNotWidenTheWindow) {
  showView();
  const auto* detail = visibleWidgetsOf<Gtk::Label>(window_->native())[1];
  ASSERT_TRUE(waitUntil([&] { return detail->get_allocated_height() > 1; }));
  const int before = detail->get_allocated_height();
  view_->setDetail(std::string(2000, 'x') + " " + std::string(200, 'y'));
  EXPECT_TRUE(waitUntil([&] { return detail->get_allocated_height() > 10 * before; }));
  EXPECT_LE(detail->get_allocated_width(), 1100);
  EXPECT_EQ(infoOf(window_->native()).content.width, 1100);
}

TEST_F(LinuxErrorViewTest, ButtonsCallTheirActions) {
  showView();
  button("Try Again")->clicked();
  EXPECT_EQ(retries_, 1);
  button("Open in Browser")->clicked();
  EXPECT_EQ(opened_, 1);
  EXPECT_EQ(retries_, 1);
}

TEST_F(LinuxErrorViewTest, ReturnRetries) {
  showView();
  keyboard_.chord("Return");
  EXPECT_TRUE(waitUntil([this] { return retries_ == 1; }));
  EXPECT_EQ(opened_, 0);
}

TEST_F(LinuxErrorViewTest, ReturnRetriesWhereverTheFocusIs) {
  showView();
  button("Open in Browser")->grab_focus();
  keyboard_.chord("Return");
  EXPECT_TRUE(waitUntil([this] { return retries_ + opened_ > 0; }));
  EXPECT_EQ(retries_, 1);
  keyboard_.chord("space");
  EXPECT_TRUE(waitUntil([this] { return opened_ == 1; }));
}

TEST_F(LinuxErrorViewTest, KeepsClicksFromThePage) {
  showView();
  const auto area = onScreen(window_->overlay());
  mouse_.click({area.x + 20, area.y + 20});
  mouse_.click(onScreen(*button("Try Again")).center());
  ASSERT_TRUE(waitUntil([this] { return retries_ == 1; }));
  EXPECT_EQ(clicksOnPage_, 0);
}

TEST_F(LinuxErrorViewTest, ALaterViewIsOnTop) {
  showView();
  auto second = texts();
  second.title = "Second";
  second.onRetry = [this] { opened_ += 10; };
  LinuxErrorView above(*window_, second);
  above.setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return pixelsOfPage() == 0; }));
  keyboard_.chord("Return");
  EXPECT_TRUE(waitUntil([this] { return opened_ == 10; }));
  EXPECT_EQ(retries_, 0);
}

TEST_F(LinuxErrorViewTest, LeavesTheWindowWhenDestroyed) {
  const std::size_t before = window_->overlay().get_children().size();
  showView();
  view_.reset();
  EXPECT_EQ(window_->overlay().get_children().size(), before);
  EXPECT_THAT(labels(), ElementsAre());
  EXPECT_TRUE(waitUntil([this] { return pixelsOfPage() > 0; }));
  EXPECT_EQ(gtk_window_get_default_widget(window_->native().gobj()), nullptr);
}

TEST_F(LinuxErrorViewTest, AnActionMayDestroyTheView) {
  auto description = texts();
  description.onRetry = [this] {
    view_.reset();
    ++retries_;
  };
  view_ = std::make_unique<LinuxErrorView>(*window_, description);
  view_->setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return isLaidOut(*button("Try Again")); }));
  keyboard_.chord("Return");
  EXPECT_TRUE(waitUntil([this] { return retries_ == 1; }));
  EXPECT_EQ(view_, nullptr);
}

// A window that shows a real page with a text field, and typing goes into it.
class LinuxErrorViewOverAPageTest : public WindowTest {
 protected:
  static WebSession& session() {
    // Never destroyed, because views of later tests use its processes.
    static auto* const shared = new WebSession();
    return *shared;
  }
  void SetUp() override {
    server_.serveHtml("/",
                      "<body><textarea autofocus></textarea>"
                      "<script>document.querySelector('textarea').focus()</script></body>");
    page_ = std::make_shared<LinuxWebView>(
        session(),
        WebViewConfiguration{.origin = testUrl(server_.origin()), .messageHandler = &messages_});
    page_->setNavigationDelegate(&navigation_);
    window_->setContentView(page_);
    ASSERT_TRUE(show(*window_));
    page_->load({.url = testUrl(server_.url("/"))});
    ASSERT_TRUE(waitUntil([this] { return navigation_.finished == 1; }));
    keyboard_.type("a");
    ASSERT_TRUE(waitUntil([this] { return text() == "a"; }));
    view_ = std::make_unique<LinuxErrorView>(
        *window_, ErrorViewDescription{"Cannot load", "No answer", "Try Again", "Open in Browser",
                                       [this] { ++retries_; }, [this] { ++opened_; }});
  }

  std::string text() {
    std::optional<Json> value;
    page_->evaluateJavaScript(
        "document.querySelector('textarea').value",
        [&](const WebView::EvaluationResult& result) { value = result ? *result : Json(); });
    EXPECT_TRUE(waitUntil([&] { return value.has_value(); }));
    return value && value->is_string() ? value->get<std::string>() : std::string();
  }
  // Returns the label of the focused button, or an empty string.
  std::string focused() {
    const auto* button = dynamic_cast<Gtk::Button*>(window_->native().get_focus());
    return button == nullptr ? std::string() : button->get_label().raw();
  }
  // Presses keys and waits until the window has handled them: a later key arrives after them.
  void strike(const std::string& keys) {
    bool handled = false;
    sigc::connection connection = window_->native().signal_key_release_event().connect(
        [&](GdkEventKey* event) {
          handled = handled || event->keyval == GDK_KEY_F12;
          return false;
        },
        false);
    keyboard_.chord(keys);
    keyboard_.chord("F12");
    EXPECT_TRUE(waitUntil([&] { return handled; })) << keys;
    connection.disconnect();
  }
  void hideWindow() {
    window_->orderOut();
    ASSERT_TRUE(waitUntil([this] { return !window_->native().is_active(); }));
  }
  void hideAndShowWindow() {
    hideWindow();
    ASSERT_TRUE(show(*window_));
  }

  HttpServer server_;
  RecordedMessages messages_;
  RecordedNavigation navigation_;
  std::shared_ptr<LinuxWebView> page_;
  std::unique_ptr<LinuxMainWindow> window_ = makeWindow();
  int retries_ = 0;
  int opened_ = 0;
  std::unique_ptr<LinuxErrorView> view_;
};

TEST_F(LinuxErrorViewOverAPageTest, KeepsTheKeyboardWhenTheWindowIsHiddenAndShown) {
  view_->setHidden(false);
  hideAndShowWindow();
  EXPECT_EQ(focused(), "Try Again");
  for (const char* key : {"x", "y", "Return"})
    strike(key);
  EXPECT_EQ(retries_, 1);
  EXPECT_EQ(text(), "a");
}

TEST_F(LinuxErrorViewOverAPageTest, HasTheKeyboardIfItAppearsWhileTheWindowIsHidden) {
  hideWindow();
  view_->setHidden(false);
  ASSERT_TRUE(show(*window_));
  for (const char* key : {"x", "Return"})
    strike(key);
  EXPECT_EQ(retries_, 1);
  EXPECT_EQ(text(), "a");
}

TEST_F(LinuxErrorViewOverAPageTest, KeepsTheFocusAmongItsButtons) {
  view_->setHidden(false);
  ASSERT_EQ(focused(), "Try Again");
  std::vector<std::string> visited;
  for (const char* key : {"Tab", "Tab", "Tab", "Shift+Tab", "Shift+Tab", "Down", "Down"}) {
    strike(key);
    strike("x");
    visited.push_back(focused());
  }
  EXPECT_THAT(visited, ElementsAre("Open in Browser", "Try Again", "Open in Browser", "Try Again",
                                   "Open in Browser", "Try Again", "Open in Browser"));
  EXPECT_EQ(text(), "a");
}

TEST_F(LinuxErrorViewOverAPageTest, KeepsTheKeyboardFromAPageThatAsksForIt) {
  view_->setHidden(false);
  page_->evaluateJavaScript("window.focus(); document.querySelector('textarea').focus()", {});
  window_->makeContentViewFirstResponder();
  EXPECT_EQ(text(), "a");
  strike("x");
  strike("Return");
  EXPECT_EQ(retries_, 1);
  EXPECT_EQ(text(), "a");
}

TEST_F(LinuxErrorViewOverAPageTest, GivesTheKeyboardBackToThePage) {
  view_->setHidden(false);
  hideAndShowWindow();
  view_->setHidden(true);
  keyboard_.type("b");
  EXPECT_TRUE(waitUntil([this] { return text() == "ab"; }));
  view_.reset();
  keyboard_.type("c");
  EXPECT_TRUE(waitUntil([this] { return text() == "abc"; }));
}

TEST_F(LinuxErrorViewOverAPageTest, KeepsTheKeyboardWhileAnotherOneIsShown) {
  view_->setHidden(false);
  auto second = std::make_unique<LinuxErrorView>(
      *window_,
      ErrorViewDescription{"Second", "", "Second", "Browser", [] {}, [this] { ++opened_; }});
  second->setHidden(false);
  EXPECT_EQ(focused(), "Second");
  second.reset();
  EXPECT_EQ(focused(), "Try Again");
  strike("x");
  EXPECT_EQ(text(), "a");
}

}  // namespace
}  // namespace navora
