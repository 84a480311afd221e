#include <gmock/gmock.h>

#include "unit/navigation/DesktopNavigationTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Files = std::vector<std::filesystem::path>;

const std::vector<FrameInfo> untrustedFrames = {subframe("https://navora.example/"),
                                                mainFrame("https://remote.example/"),
                                                mainFrame("http://navora.example/"),
                                                mainFrame("https://user@navora.example/"),
                                                subframe("https://remote.example/"),
                                                {true, std::nullopt},
                                                {}};

class DesktopNavigationDialogsTest : public DesktopNavigationTest {
 protected:
  void alert(const FrameInfo& frame) {
    navigation_->runAlertPanel("Done", frame, [this] { ++alertAnswers_; });
  }
  void confirm(const FrameInfo& frame) {
    navigation_->runConfirmPanel("Delete it?", frame,
                                 [this](bool answer) { confirmAnswers_.push_back(answer); });
  }
  void prompt(const FrameInfo& frame, const std::optional<std::string>& defaultText) {
    navigation_->runTextInputPanel("Name?", defaultText, frame,
                                   [this](auto answer) { promptAnswers_.push_back(answer); });
  }
  void chooseFiles(const FrameInfo& frame, const OpenPanelParameters& parameters = {}) {
    navigation_->runOpenPanel(parameters, frame,
                              [this](auto files) { fileAnswers_.push_back(files); });
  }

  int alertAnswers_ = 0;
  std::vector<bool> confirmAnswers_;
  std::vector<std::optional<std::string>> promptAnswers_;
  std::vector<std::optional<Files>> fileAnswers_;
};

TEST_F(DesktopNavigationDialogsTest, AnswerUntrustedFramesImmediatelyWithoutADialog) {
  for (const auto& frame : untrustedFrames) {
    alert(frame);
    confirm(frame);
    prompt(frame, "default");
    chooseFiles(frame);
  }
  const auto count = untrustedFrames.size();
  EXPECT_EQ(alertAnswers_, static_cast<int>(count));
  EXPECT_EQ(confirmAnswers_, std::vector<bool>(count, false));
  EXPECT_EQ(promptAnswers_, std::vector<std::optional<std::string>>(count));
  EXPECT_EQ(fileAnswers_, std::vector<std::optional<Files>>(count));
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(DesktopNavigationDialogsTest, AlertShowsThePagesMessageWithTheProductName) {
  alert(trustedFrame_);
  EXPECT_THAT(dialogs().alerts.requests(),
              ElementsAre(AlertDescription{"Навора", "Done", {}, std::nullopt}));
}

TEST_F(DesktopNavigationDialogsTest, AlertUnblocksThePageWhenItIsAnswered) {
  alert(trustedFrame_);
  EXPECT_EQ(alertAnswers_, 0);
  dialogs().alerts.answer({});
  EXPECT_EQ(alertAnswers_, 1);
}

TEST_F(DesktopNavigationDialogsTest, AlertCanBeAnsweredBeforeTheCallReturns) {
  dialogs().alerts.answerAhead({});
  alert(trustedFrame_);
  EXPECT_EQ(alertAnswers_, 1);
}

TEST_F(DesktopNavigationDialogsTest, ConfirmHasContinueAsItsFirstButton) {
  confirm(trustedFrame_);
  EXPECT_THAT(dialogs().alerts.requests(),
              ElementsAre(AlertDescription{
                  "Навора", "Delete it?", {"Продолжить", "Отмена"}, std::nullopt}));
}

TEST_F(DesktopNavigationDialogsTest, ConfirmIsTrueForTheFirstButtonOnly) {
  dialogs().alerts.answerAhead({0, ""});
  confirm(trustedFrame_);
  dialogs().alerts.answerAhead({1, ""});
  confirm(trustedFrame_);
  EXPECT_THAT(confirmAnswers_, ElementsAre(true, false));
}

TEST_F(DesktopNavigationDialogsTest, ConfirmCanBeAnsweredLater) {
  confirm(trustedFrame_);
  EXPECT_THAT(confirmAnswers_, IsEmpty());
  dialogs().alerts.answer({0, ""});
  EXPECT_THAT(confirmAnswers_, ElementsAre(true));
}

TEST_F(DesktopNavigationDialogsTest, PromptHasAFieldWithTheDefaultText) {
  prompt(trustedFrame_, "Untitled");
  EXPECT_THAT(dialogs().alerts.requests(),
              ElementsAre(AlertDescription{"Навора",
                                           "Name?",
                                           {"Сохранить", "Отмена"},
                                           AlertDescription::TextField{{320, 24}, "Untitled"}}));
}

TEST_F(DesktopNavigationDialogsTest, PromptStartsEmptyWithoutADefaultText) {
  prompt(trustedFrame_, std::nullopt);
  EXPECT_EQ(dialogs().alerts.requests().front().textField,
            (AlertDescription::TextField{{320, 24}, ""}));
}

TEST_F(DesktopNavigationDialogsTest, PromptReturnsTheTextOfTheFieldWhenSaved) {
  dialogs().alerts.answerAhead({0, "Круг"});
  prompt(trustedFrame_, "Untitled");
  EXPECT_THAT(promptAnswers_, ElementsAre("Круг"));
}

TEST_F(DesktopNavigationDialogsTest, PromptDistinguishesAnEmptyTextFromACancellation) {
  dialogs().alerts.answerAhead({0, ""});
  prompt(trustedFrame_, "Untitled");
  dialogs().alerts.answerAhead({1, "Untitled"});
  prompt(trustedFrame_, "Untitled");
  EXPECT_THAT(promptAnswers_, ElementsAre("", std::nullopt));
}

TEST_F(DesktopNavigationDialogsTest, ShowTheirTextsInTheCurrentLanguageAndThePagesUnchanged) {
  locale_.setCatalogs(R"({"en": {"Навора": "Navora", "Продолжить": "Continue", "Отмена": "Cancel",
                                "Сохранить": "Save", "Delete it?": "no", "Name?": "no"}})");
  DesktopLocale::requested = "en";
  confirm(trustedFrame_);
  prompt(trustedFrame_, "Отмена");
  EXPECT_THAT(
      dialogs().alerts.requests(),
      ElementsAre(AlertDescription{"Navora", "Delete it?", {"Continue", "Cancel"}, std::nullopt},
                  AlertDescription{"Navora",
                                   "Name?",
                                   {"Save", "Cancel"},
                                   AlertDescription::TextField{{320, 24}, "Отмена"}}));
}

TEST_F(DesktopNavigationDialogsTest, OpenPanelIsASheetOnTheWindowWithThePagesParameters) {
  for (const bool multiple : {false, true}) {
    for (const bool directories : {false, true})
      chooseFiles(trustedFrame_, {multiple, directories});
  }
  using Request = FakeDialogs::OpenPanelRequest;
  EXPECT_THAT(
      dialogs().openPanels.requests(),
      ElementsAre(Request{window_.get(), {false, false}}, Request{window_.get(), {false, true}},
                  Request{window_.get(), {true, false}}, Request{window_.get(), {true, true}}));
}

TEST_F(DesktopNavigationDialogsTest, OpenPanelReturnsTheChosenFilesOrNullopt) {
  chooseFiles(trustedFrame_);
  EXPECT_THAT(fileAnswers_, IsEmpty());
  dialogs().openPanels.answer(Files{"/home/a.txt", "/home/b.txt"});
  chooseFiles(trustedFrame_);
  dialogs().openPanels.answer(std::nullopt);
  EXPECT_THAT(fileAnswers_, ElementsAre(Files{"/home/a.txt", "/home/b.txt"}, std::nullopt));
}

TEST_F(DesktopNavigationDialogsTest, OpenPanelReturnsNulloptIfTheWindowIsDestroyed) {
  window_.reset();
  chooseFiles(trustedFrame_);
  EXPECT_THAT(fileAnswers_, ElementsAre(std::nullopt));
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(DesktopNavigationDialogsTest, AlertsNeedNoWindow) {
  window_.reset();
  dialogs().alerts.answerAhead({0, ""});
  confirm(trustedFrame_);
  EXPECT_THAT(confirmAnswers_, ElementsAre(true));
}

TEST_F(DesktopNavigationDialogsTest, DoNotKeepTheWindowAlive) {
  const std::weak_ptr<MainWindow> observed = window_;
  window_.reset();
  EXPECT_TRUE(observed.expired());
}

// The application can quit while the page waits for an answer.
TEST_F(DesktopNavigationDialogsTest, CanBeAnsweredAfterTheNavigationIsDestroyed) {
  confirm(trustedFrame_);
  chooseFiles(trustedFrame_);
  navigation_.reset();
  dialogs().alerts.answer({0, ""});
  dialogs().openPanels.answer(Files{"/home/a.txt"});
  EXPECT_THAT(confirmAnswers_, ElementsAre(true));
  EXPECT_THAT(fileAnswers_, ElementsAre(Files{"/home/a.txt"}));
}

}  // namespace
}  // namespace navora
