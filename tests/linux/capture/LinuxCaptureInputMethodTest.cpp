#include <algorithm>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "linux/capture/CapturePanelTest.h"
#include "linux/capture/InputMethod.h"

namespace navora {
namespace {

using testing::Contains;
using testing::Not;

constexpr KeyEvent escape{KeyEvent::escapeKey, 0};
constexpr KeyEvent controlReturn{KeyEvent::returnKey, KeyEvent::control};

// Types with a real input method.
class LinuxCaptureInputMethodTest : public CapturePanelTest {
 protected:
  void start(const char* engine, InputMethod::Preedit preedit) {
    inputMethod_ = std::make_unique<InputMethod>(preedit);
    panel_.reset();
    CapturePanelTest::SetUp();
    g_signal_connect(panel_->textView().gobj(), "preedit-changed",
                     G_CALLBACK(+[](GtkTextView*, const char* text, gpointer last) {
                       *static_cast<std::string*>(last) = text;
                     }),
                     &composition_);
    ASSERT_TRUE(open());
    ASSERT_TRUE(waitUntil([&] { return inputMethod_->hasContext(); }));
    inputMethod_->useEngine(engine);
  }
  testing::AssertionResult compose(const std::string& keys, const std::string& text) {
    keyboard_.type(keys);
    const auto reached = waitUntil([&] { return composition_ == text; });
    return reached ? reached : testing::AssertionFailure() << "composing " << composition_;
  }
  // Composes 60 syllables, a few at a time: ibus drops keys that it cannot handle in time.
  testing::AssertionResult composeSentence() {
    std::string sentence;
    while (sentence.size() < std::string("か").size() * 60) {
      sentence += "かかかかかか";
      const auto reached = compose("kkkkkk", sentence);
      if (!reached) return reached;
    }
    return testing::AssertionSuccess();
  }
  // Destroying the panel ends a composition.
  void TearDown() override { panel_.reset(); }
  std::string text() { return panel_->editor().text(); }

  std::unique_ptr<InputMethod> inputMethod_;
  std::string composition_;
};

constexpr auto inTheTextView = InputMethod::Preedit::inTheTextView;
constexpr auto inItsOwnWindow = InputMethod::Preedit::inItsOwnWindow;

class CommittingEngineTest : public LinuxCaptureInputMethodTest,
                             public testing::WithParamInterface<const char*> {
 protected:
  // Return ends what the engine still has to say about the text.
  void expectCommittedOnce(const std::string& committed) {
    EXPECT_EQ(text(), committed);
    ASSERT_TRUE(open());
    keyboard_.chord("Return");
    ASSERT_TRUE(waitUntil([&] { return text().ends_with("\n"); })) << text();
    EXPECT_EQ(text(), committed + "\n");
  }
};

TEST_P(CommittingEngineTest, CommitsOnceWhenThePanelIsHidden) {
  start(GetParam(), inTheTextView);
  ASSERT_TRUE(compose("kkk", std::string(GetParam()) == "Unikey" ? "kkk" : "かかか"));
  const std::string composed = composition_;
  panel_->orderOut();
  ASSERT_TRUE(waitUntil([&] { return !infoOf(panel_->native()).mapped && !delegate_.focused; }));
  expectCommittedOnce(composed);
}

TEST_P(CommittingEngineTest, CommitsOnceWhenAnotherWindowTakesTheKeyboard) {
  start(GetParam(), inTheTextView);
  ASSERT_TRUE(compose("kkk", std::string(GetParam()) == "Unikey" ? "kkk" : "かかか"));
  const std::string composed = composition_;
  Gtk::Window other;
  other.show();
  other.present();
  ASSERT_TRUE(waitUntil([&] { return delegate_.resignations == 1; }));
  expectCommittedOnce(composed);
}

TEST_P(CommittingEngineTest, CommitsOnceOnDemand) {
  start(GetParam(), inTheTextView);
  ASSERT_TRUE(compose("kkk", std::string(GetParam()) == "Unikey" ? "kkk" : "かかか"));
  const std::string composed = composition_;
  panel_->editor().commitComposition();
  EXPECT_EQ(composition_, "");
  EXPECT_TRUE(delegate_.focused);
  expectCommittedOnce(composed);
}

INSTANTIATE_TEST_SUITE_P(LinuxCaptureInputMethod, CommittingEngineTest,
                         testing::Values("m17n:t:syllables", "Unikey"), [](const auto& engine) {
                           return engine.param[0] == 'U' ? "Unikey" : "M17n";
                         });

class TakenKeysTest : public LinuxCaptureInputMethodTest,
                      public testing::WithParamInterface<InputMethod::Preedit> {
 protected:
  void SetUp() override { start("m17n:t:syllables", GetParam()); }
  // With the text in the input method's window there is nothing to wait for.
  void composeSyllables() {
    keyboard_.type("kn");
    if (GetParam() == inTheTextView) {
      ASSERT_TRUE(waitUntil([&] { return composition_ == "かな"; }));
    }
  }
};

TEST_P(TakenKeysTest, EscapeBelongsToTheInputMethodWhileItComposes) {
  composeSyllables();
  keyboard_.chord("Escape");
  composeSyllables();
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForText("かな"));
  EXPECT_THAT(delegate_.keys, Not(Contains(escape)));
  keyboard_.chord("Escape");
  EXPECT_TRUE(waitUntil([&] { return std::ranges::count(delegate_.keys, escape) == 1; }));
}

TEST_P(TakenKeysTest, ControlReturnBelongsToTheInputMethodWhileItComposes) {
  composeSyllables();
  keyboard_.chord("Control+Return");
  ASSERT_TRUE(waitForText("かな"));
  EXPECT_THAT(delegate_.keys, Not(Contains(controlReturn)));
  keyboard_.chord("Control+Return");
  EXPECT_TRUE(waitUntil([&] { return std::ranges::count(delegate_.keys, controlReturn) == 1; }));
}

INSTANTIATE_TEST_SUITE_P(LinuxCaptureInputMethod, TakenKeysTest,
                         testing::Values(inTheTextView, inItsOwnWindow), [](const auto& preedit) {
                           return preedit.param == inTheTextView ? "InTheTextView"
                                                                 : "InItsOwnWindow";
                         });

TEST_F(LinuxCaptureInputMethodTest, MeasuresALongComposedSentence) {
  start("m17n:t:syllables", inTheTextView);
  EXPECT_EQ(panel_->editor().textHeight(4000), 25);
  ASSERT_TRUE(composeSentence());
  EXPECT_GE(delegate_.compositionChanges, 1);
  EXPECT_GE(panel_->editor().textHeight(4000), 40);
  EXPECT_EQ(text(), "");
  panel_->editor().commitComposition();
  EXPECT_GE(panel_->editor().textHeight(4000), 40);
  panel_->editor().clear();
  EXPECT_TRUE(waitUntil([&] { return panel_->editor().textHeight(4000) == 25; }));
  ASSERT_TRUE(composeSentence());
  EXPECT_GE(panel_->editor().textHeight(4000), 40);
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitUntil([&] { return composition_.empty(); }));
  EXPECT_EQ(panel_->editor().textHeight(4000), 25);
}

}  // namespace
}  // namespace navora
