#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtkmm/button.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/textview.h>

#include "fakes/LocaleScope.h"
#include "hosts/linux/window/LinuxDialogs.h"
#include "linux/window/WindowTest.h"
#include "support/Text.h"

namespace navora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class AlertDialogTest : public WindowTest {
 protected:
  struct Answers {
    std::vector<std::size_t> buttons;
    std::vector<std::string> texts;
  };

  void SetUp() override {
    ASSERT_TRUE(show(*window_));
    dialogs_.setParent(&window_->native());
  }
  void TearDown() override { EXPECT_THAT(shownAlerts(), IsEmpty()); }

  Dialogs::AlertCompletion recordIn(Answers& answers) {
    return [&answers](const AlertResult& result) {
      answers.buttons.push_back(result.button);
      answers.texts.push_back(result.text);
    };
  }
  // Shows the alert and waits until it has the keyboard focus.
  Gtk::MessageDialog& run(const AlertDescription& alert) {
    dialogs_.runAlert(alert, recordIn(answers_));
    EXPECT_TRUE(waitUntil([&] { return isReady(alert.messageText); }));
    return *shownAlert(alert.messageText);
  }
  static Gtk::MessageDialog* shownAlert(const std::string& title) {
    for (Gtk::MessageDialog* alert : shownAlerts()) {
      if (alert->get_title() == title) return alert;
    }
    return nullptr;
  }
  static bool isReady(const std::string& title) {
    auto* alert = shownAlert(title);
    return alert != nullptr && isReadyForKeys(*alert);
  }
  testing::AssertionResult waitForAnswer() {
    return waitUntil([this] { return !answers_.buttons.empty(); });
  }
  static std::vector<std::string> textsOf(Gtk::MessageDialog& alert) {
    std::vector<std::string> texts;
    for (const Gtk::Label* label : visibleWidgetsOf<Gtk::Label>(alert))
      texts.push_back(label->get_text());
    for (Gtk::TextView* view : visibleWidgetsOf<Gtk::TextView>(alert))
      texts.push_back(view->get_buffer()->get_text());
    return texts;
  }
  static std::vector<Gtk::Button*> buttonsOf(Gtk::MessageDialog& alert) {
    auto buttons = visibleWidgetsOf<Gtk::Button>(alert);
    std::ranges::sort(buttons, {}, [](Gtk::Button* button) { return onScreen(*button).x; });
    return buttons;
  }

  std::unique_ptr<LinuxMainWindow> window_ = makeWindow();
  LinuxDialogs dialogs_;
  Answers answers_;
};

TEST_F(AlertDialogTest, ShowsItsTextsLiterally) {
  auto& alert = run({"<b>Title</b> & co", "100 % of <i>this</i> &amp; that", {"OK"}, {}});
  EXPECT_THAT(textsOf(alert), Contains("<b>Title</b> & co"));
  EXPECT_THAT(textsOf(alert), Contains("100 % of <i>this</i> &amp; that"));
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
}

TEST_F(AlertDialogTest, IsModalAndTransientForTheWindow) {
  auto& alert = run({"Title", "Text", {"OK"}, {}});
  EXPECT_EQ(alert.get_transient_for(), &window_->native());
  EXPECT_TRUE(alert.get_modal());
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
}

TEST_F(AlertDialogTest, LabelsItsLoneButtonInTheInterfaceLanguage) {
  LocaleScope locale;
  locale.setCatalogs(R"({"es": {"ОК": "Aceptar"}})");
  locale.prefer({"es"});
  const auto buttons = buttonsOf(run({"Title", "Text", {}, {}}));
  ASSERT_EQ(buttons.size(), 1U);
  EXPECT_EQ(buttons[0]->get_label(), "Aceptar");
  EXPECT_TRUE(buttons[0]->has_default());
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
}

TEST_F(AlertDialogTest, OpensWithoutAWindow) {
  dialogs_.setParent(nullptr);
  run({"Title", "Text", {"OK"}, {}});
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
}

TEST_F(AlertDialogTest, TheDefaultButtonIsTheOutermostOne) {
  auto& alert = run({"Title", "Text", {"First", "Second", "Third"}, {}});
  const auto buttons = buttonsOf(alert);
  ASSERT_EQ(buttons.size(), 3U);
  EXPECT_EQ(buttons[0]->get_label(), "Third");
  EXPECT_EQ(buttons[1]->get_label(), "Second");
  EXPECT_EQ(buttons[2]->get_label(), "First");
  EXPECT_TRUE(buttons[2]->has_default());
  buttons[1]->clicked();
  ASSERT_TRUE(waitForAnswer());
  EXPECT_THAT(answers_.buttons, ElementsAre(1));
}

TEST_F(AlertDialogTest, ReturnPressesTheFirstButton) {
  run({"Title", "Text", {"First", "Second"}, {}});
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
  EXPECT_THAT(answers_.buttons, ElementsAre(0));
}

TEST_F(AlertDialogTest, EscapeReturnsTheLastButton) {
  run({"Title", "Text", {"First", "Second", "Third"}, {}});
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitForAnswer());
  EXPECT_THAT(answers_.buttons, ElementsAre(2));
}

TEST_F(AlertDialogTest, ClosingReturnsTheLastButton) {
  auto& alert = run({"Title", "Text", {"First", "Second"}, {}});
  display_.close(infoOf(alert).id);
  ASSERT_TRUE(waitForAnswer());
  EXPECT_THAT(answers_.buttons, ElementsAre(1));
}

TEST_F(AlertDialogTest, HasThePlatformsButtonWithoutTitles) {
  auto& alert = run({"Title", "Text", {}, {}});
  EXPECT_EQ(buttonsOf(alert).size(), 1U);
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
  EXPECT_THAT(answers_.buttons, ElementsAre(0));
}

TEST_F(AlertDialogTest, ATextFieldHasItsTextAndTheFocus) {
  auto& alert = run({"Title", "Text", {"OK", "Cancel"}, {{{300, 30}, "before & <b>"}}});
  const auto entries = visibleWidgetsOf<Gtk::Entry>(alert);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0]->get_text(), "before & <b>");
  EXPECT_TRUE(entries[0]->has_focus());
  EXPECT_GE(entries[0]->get_allocated_width(), 300);
  keyboard_.chord("End");
  keyboard_.type(" after");
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
  EXPECT_THAT(answers_.buttons, ElementsAre(0));
  EXPECT_THAT(answers_.texts, ElementsAre("before & <b> after"));
}

TEST_F(AlertDialogTest, ReturnsAnEmptyTextWithoutATextField) {
  run({"Title", "Text", {"OK"}, {}});
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
  EXPECT_THAT(answers_.texts, ElementsAre(""));
}

TEST_F(AlertDialogTest, TwoAlertsAreAnsweredIndependently) {
  Answers first;
  Answers second;
  dialogs_.runAlert({"First", "", {"A", "B"}, {}}, recordIn(first));
  dialogs_.runAlert({"Second", "", {"A", "B"}, {}}, recordIn(second));
  ASSERT_EQ(shownAlerts().size(), 2U);
  ASSERT_TRUE(waitUntil([] { return isReady("Second"); }));
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitUntil([&] { return !second.buttons.empty(); }));
  EXPECT_THAT(first.buttons, IsEmpty());
  ASSERT_TRUE(waitUntil([] { return isReady("First"); }));
  keyboard_.chord("Return");
  ASSERT_TRUE(waitUntil([&] { return !first.buttons.empty(); }));
  EXPECT_THAT(first.buttons, ElementsAre(0));
  EXPECT_THAT(second.buttons, ElementsAre(1));
}

TEST_F(AlertDialogTest, TheCompletionMayShowAnotherAlert) {
  dialogs_.runAlert({"First", "", {"OK"}, {}}, [this](const AlertResult&) {
    dialogs_.runAlert({"Second", "", {"OK"}, {}}, recordIn(answers_));
  });
  ASSERT_TRUE(waitUntil([] { return isReady("First"); }));
  keyboard_.chord("Return");
  ASSERT_TRUE(waitUntil([] { return isReady("Second"); }));
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
}

class LongAlertTest : public AlertDialogTest, public testing::WithParamInterface<std::string> {};

TEST_P(LongAlertTest, StaysOnTheScreenWithItsButtons) {
  auto& alert = run({"Title", GetParam(), {"First", "Second"}, {{{300, 30}, "answer"}}});
  const auto& screen = display_.connection().screen();
  const driver::Rectangle area{0, 0, screen.width_in_pixels, screen.height_in_pixels};
  ASSERT_TRUE(waitUntil([&] { return buttonsOf(alert).size() == 2; }));
  std::vector<Gtk::Widget*> needed;
  for (auto* button : buttonsOf(alert))
    needed.push_back(button);
  for (auto* entry : visibleWidgetsOf<Gtk::Entry>(alert))
    needed.push_back(entry);
  for (Gtk::Widget* widget : needed) {
    const auto place = onScreen(*widget);
    EXPECT_TRUE(area.contains({place.x, place.y}));
    EXPECT_TRUE(area.contains({place.x + place.width - 1, place.y + place.height - 1}));
  }
  // The text is complete, apart from added line breaks.
  std::vector<std::string> shown;
  for (const auto& text : textsOf(alert))
    shown.push_back(replaceAll(text, "\n", ""));
  EXPECT_THAT(shown, Contains(replaceAll(GetParam(), "\n", "")));
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForAnswer());
}

std::string repeated(const std::string& text, std::size_t bytes) {
  std::string result;
  while (result.size() < bytes)
    result += text;
  return result;
}

INSTANTIATE_TEST_SUITE_P(OfEveryShape, LongAlertTest,
                         testing::Values(repeated("word ", 100'000), repeated("line\n", 100'000),
                                         repeated("x", 100'000), repeated("ж", 20'000)));

}  // namespace
}  // namespace navora
