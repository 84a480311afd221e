#include <gmock/gmock.h>

#include "fakes/FakeCanvas.h"
#include "unit/capture/QuickCaptureTest.h"

namespace navora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int index = 0; index < count; ++index)
    result += text;
  return result;
}

class DesktopQuickCapturePanelTest : public QuickCaptureTest {};

TEST_F(DesktopQuickCapturePanelTest, IsMadeHiddenWithItsTexts) {
  make();
  EXPECT_FALSE(panel().isVisible());
  EXPECT_EQ(panel().title(), "Быстрая запись — Навора");
  EXPECT_EQ(panel().message(), hint);
  EXPECT_EQ(panel().submitToolTip(), "Сохранить запись — ⌘+Enter");
  EXPECT_EQ(panel().submitAccessibilityLabel(), "Сохранить запись");
  EXPECT_EQ(editor().accessibilityLabel(), "Новая запись");
  EXPECT_EQ(editor().placeholder(), "Какая мысль зацепила?");
  EXPECT_FALSE(panel().isSubmitEnabled());
  EXPECT_TRUE(editor().isEditable());
}

TEST_F(DesktopQuickCapturePanelTest, OpensWithTheFocusInTheEditorAndTheCaretAtTheEnd) {
  make();
  log().take();
  capture->show();
  EXPECT_THAT(log().take(), ElementsAre("panel.makeKeyAndOrderFront", "editor.makeFirstResponder",
                                        "editor.moveCaretToEnd"));
  EXPECT_TRUE(editor().isFocused());
}

TEST_F(DesktopQuickCapturePanelTest, ComesToTheFrontIfItIsAlreadyOpen) {
  open("Draft");
  const Rectangle moved{10, 20, 800, 165};
  panel().setFrame(moved);
  platform.workspace().frontmost = nullptr;
  capture->show();
  EXPECT_THAT(log().take(), ElementsAre("panel.makeKeyAndOrderFront", "editor.makeFirstResponder"));
  EXPECT_EQ(panel().frame().x, 10);
  capture->hide(true);
  EXPECT_THAT(log().take(), Contains("application.activate Letters"));
}

TEST_F(DesktopQuickCapturePanelTest, OpensOnTheScreenWithThePointer) {
  platform.workspace().allScreens = {{{0, 0, 1000, 1000}, {0, 0, 1000, 1000}},
                                     {{1000, 0, 700, 1000}, {1000, 0, 700, 1000}}};
  platform.captureDesktop().dark = true;
  platform.workspace().mouse = {10, 10};
  open();
  EXPECT_EQ(panel().frame(), (Rectangle{100, 515, 800, 165}));
  capture->hide(false);
  platform.workspace().mouse = {1200, 10};
  open();
  EXPECT_EQ(panel().frame(), (Rectangle{1020, 515, 660, 165}));
}

TEST_F(DesktopQuickCapturePanelTest, KeepsItsFrameIfThereIsNoScreen) {
  platform.workspace().allScreens.clear();
  make();
  const Rectangle before = panel().frame();
  capture->show();
  EXPECT_EQ(panel().frame(), before);
  EXPECT_TRUE(panel().isVisible());
}

TEST_F(DesktopQuickCapturePanelTest, KeepsTheDraftAndRestoresTheFocusWhenItIsDismissed) {
  open("Draft");
  EXPECT_TRUE(editor().press({KeyEvent::escapeKey, 0}));
  EXPECT_FALSE(panel().isVisible());
  EXPECT_THAT(log().take(), ElementsAre("panel.orderOut", "application.activate Letters"));
  capture->show();
  EXPECT_EQ(editor().text(), "Draft");
  EXPECT_THAT(log().take(), Contains("editor.moveCaretToEnd"));
}

TEST_F(DesktopQuickCapturePanelTest, DoesNotRestoreTheFocusWhenTheUserClicksElsewhere) {
  open("Draft");
  panel().clickElsewhere();
  EXPECT_FALSE(panel().isVisible());
  EXPECT_THAT(log().take(), ElementsAre("panel.orderOut"));
  EXPECT_EQ(editor().text(), "Draft");
}

TEST_F(DesktopQuickCapturePanelTest, CommitsWhatAnInputMethodIsComposingWhenItIsHidden) {
  open("Draft ");
  editor().compose("かな");
  capture->hide(false);
  EXPECT_THAT(log().take(), ElementsAre("editor.commitComposition", "panel.orderOut"));
  EXPECT_EQ(editor().text(), "Draft かな");
  EXPECT_TRUE(panel().isSubmitEnabled());
}

TEST_F(DesktopQuickCapturePanelTest, DoesNotActivateATerminatedApplication) {
  open();
  platform.workspace().frontmost->terminated = true;
  capture->hide(true);
  EXPECT_THAT(log().take(), ElementsAre("panel.orderOut"));
}

TEST_F(DesktopQuickCapturePanelTest, ActivatesNothingIfNoApplicationHadTheFocus) {
  platform.workspace().frontmost = nullptr;
  open();
  capture->hide(true);
  EXPECT_THAT(log().take(), ElementsAre("panel.orderOut"));
}

TEST_F(DesktopQuickCapturePanelTest, IsOrderedOutEvenIfItIsHidden) {
  make();
  log().take();
  capture->hide(true);
  EXPECT_THAT(log().take(), ElementsAre("panel.orderOut"));
}

TEST_F(DesktopQuickCapturePanelTest, ConsumesOnlyEscapeAndTheSubmitKeys) {
  open();
  EXPECT_FALSE(editor().press({KeyEvent::returnKey, 0}));
  EXPECT_FALSE(editor().press({KeyEvent::returnKey, KeyEvent::shift}));
  EXPECT_FALSE(editor().press({KeyEvent::otherKey, KeyEvent::command}));
  EXPECT_FALSE(editor().pressEquivalent({KeyEvent::escapeKey, KeyEvent::command}));
  EXPECT_TRUE(panel().isVisible());
  EXPECT_TRUE(editor().press({KeyEvent::returnKey, KeyEvent::control}));
  EXPECT_TRUE(editor().pressEquivalent({KeyEvent::keypadEnterKey, KeyEvent::command}));
}

TEST_F(DesktopQuickCapturePanelTest, LeavesEveryKeyToAComposingInputMethod) {
  open("Draft");
  EXPECT_FALSE(editor().press({KeyEvent::escapeKey, 0}, true));
  EXPECT_FALSE(editor().press({KeyEvent::returnKey, KeyEvent::control}, true));
  EXPECT_FALSE(editor().pressEquivalent({KeyEvent::returnKey, KeyEvent::command}, true));
  EXPECT_TRUE(panel().isVisible());
  EXPECT_EQ(webView->cookieQuestions(), 0u);
}

TEST_F(DesktopQuickCapturePanelTest, SubmitsByKeyAndByButton) {
  open("Draft");
  EXPECT_TRUE(editor().press({KeyEvent::returnKey, KeyEvent::control}));
  EXPECT_EQ(webView->cookieQuestions(), 1u);
  openAnew("Draft");
  panel().clickSubmit();
  EXPECT_EQ(webView->cookieQuestions(), 2u);
}

TEST_F(DesktopQuickCapturePanelTest, EnablesTheButtonForTextsThatMayBeSent) {
  open();
  editor().type(" \n\t");
  EXPECT_FALSE(panel().isSubmitEnabled());
  editor().type(" a ");
  EXPECT_TRUE(panel().isSubmitEnabled());
  editor().type(repeated("a", 10'000) + "\n");
  EXPECT_TRUE(panel().isSubmitEnabled());
  EXPECT_EQ(panel().message(), hint);
  editor().type(repeated("a", 10'001));
  EXPECT_FALSE(panel().isSubmitEnabled());
  EXPECT_EQ(panel().message(), "В записи может быть не больше 10 000 символов.");
  editor().type("a");
  EXPECT_TRUE(panel().isSubmitEnabled());
  EXPECT_EQ(panel().message(), hint);
}

TEST_F(DesktopQuickCapturePanelTest, GrowsDownwardsWithTheTextAndShrinksAgain) {
  platform.captureDesktop().dark = true;
  open();
  const double top = panel().frame().maxY();
  EXPECT_EQ(panel().frame().height, 165);
  EXPECT_EQ(panel().layout(), (CapturePanelLayout{24, 58, 14}));
  editor().type("1\n2\n3\n4");
  // Four lines of 24.65 points and the insets.
  EXPECT_EQ(panel().layout().editorHeight, 109);
  EXPECT_EQ(panel().frame().height, 216);
  EXPECT_EQ(panel().frame().maxY(), top);
  editor().type(repeated("\n", 100));
  EXPECT_EQ(panel().layout().editorHeight, 360);
  EXPECT_EQ(panel().frame().maxY(), top);
  editor().type("1");
  EXPECT_EQ(panel().frame().height, 165);
  EXPECT_EQ(panel().frame().maxY(), top);
}

TEST_F(DesktopQuickCapturePanelTest, RedrawsOnlyWhatAKeyChanges) {
  open("a");
  const int surface = panel().surfaceRedraws();
  const int button = panel().buttonRedraws();
  editor().type("ab");
  EXPECT_EQ(panel().surfaceRedraws(), surface);
  EXPECT_EQ(panel().buttonRedraws(), button);
  editor().type("a\nb\nc\nd\ne");
  EXPECT_GT(panel().surfaceRedraws(), surface);
  editor().type("");
  EXPECT_GT(panel().buttonRedraws(), button);
}

TEST_F(DesktopQuickCapturePanelTest, RedrawsInANewAppearanceOfTheSameSize) {
  open();
  const int surface = panel().surfaceRedraws();
  panel().delegate().systemAppearanceDidChange(true);
  EXPECT_GT(panel().surfaceRedraws(), surface);
}

TEST_F(DesktopQuickCapturePanelTest, GrowsWithWhatAnInputMethodIsComposing) {
  platform.captureDesktop().dark = true;
  open();
  editor().compose("1\n2\n3\n4");
  EXPECT_EQ(panel().layout().editorHeight, 109);
  EXPECT_EQ(panel().frame().height, 216);
  EXPECT_FALSE(panel().isSubmitEnabled());
  EXPECT_THAT(telemetryNames(), Not(Contains("native_input")));
  editor().compose("");
  EXPECT_EQ(panel().frame().height, 165);
}

TEST_F(DesktopQuickCapturePanelTest, GrowsWithALongMessageOnlyBeyondTheButton) {
  platform.captureDesktop().dark = true;
  platform.captureDesktop().messageLineWidth = 700;
  open();
  EXPECT_EQ(panel().layout().messageHeight, 28);
  EXPECT_EQ(panel().frame().height, 165);
  platform.captureDesktop().messageLineHeight = 20;
  editor().type("a");
  EXPECT_EQ(panel().frame().height, 167);
}

TEST_F(DesktopQuickCapturePanelTest, ChangesItsTextsWithTheLanguage) {
  make();
  locale.setCatalogs(R"({"en": {"⌘+Enter — отправить, Enter — новая строка": "Hint",
      "Быстрая запись — Навора": "Title", "Новая запись": "Label", "Сохранить запись": "Save",
      "Сохранить запись — {CAPTURE_MOD}+Enter": "{CAPTURE_MOD} saves",
      "Какая мысль зацепила?": "What?"}})");
  DesktopLocale::requested = "en";
  capture->refreshLocale();
  EXPECT_EQ(panel().title(), "Title");
  EXPECT_EQ(panel().message(), "Hint");
  EXPECT_EQ(panel().submitToolTip(), "⌘ saves");
  EXPECT_EQ(panel().submitAccessibilityLabel(), "Save");
  EXPECT_EQ(editor().accessibilityLabel(), "Label");
  EXPECT_EQ(editor().placeholder(), "What?");
}

TEST_F(DesktopQuickCapturePanelTest, OpensInTheCurrentLanguage) {
  make();
  locale.setCatalogs(R"({"en": {"Быстрая запись — Навора": "Title"}})");
  DesktopLocale::requested = "en";
  capture->show();
  EXPECT_EQ(panel().title(), "Title");
}

TEST_F(DesktopQuickCapturePanelTest, HighlightsTheBorderWhileTheEditorHasTheFocus) {
  open();
  FakeCanvas canvas;
  const int redraws = panel().surfaceRedraws();
  panel().delegate().editorDidChangeFocus(false);
  EXPECT_GT(panel().surfaceRedraws(), redraws);
  panel().delegate().paintSurface(canvas, {800, 165});
  panel().delegate().editorDidChangeFocus(true);
  panel().delegate().paintSurface(canvas, {800, 165});
  const auto palette = CaptureAppearance::fallback(false);
  EXPECT_EQ(canvas.rectangleStrokes[0].color, palette.border);
  EXPECT_EQ(canvas.rectangleStrokes[1].color, palette.focus);
}

TEST_F(DesktopQuickCapturePanelTest, HighlightsTheEnabledButtonUnderThePointer) {
  platform.captureDesktop().dark = true;
  open("Draft");
  FakeCanvas canvas;
  const auto paint = [&] { panel().delegate().paintSubmitButton(canvas, {38, 38}); };
  const int redraws = panel().buttonRedraws();
  panel().delegate().submitButtonHovered(true);
  EXPECT_GT(panel().buttonRedraws(), redraws);
  paint();
  editor().type("");
  paint();
  panel().delegate().submitButtonHovered(false);
  editor().type("a");
  paint();
  const auto palette = CaptureAppearance::fallback(true);
  EXPECT_EQ(canvas.ovalFills[0].color, palette.buttonHover);
  EXPECT_EQ(canvas.ovalFills[1].color, palette.button);
  EXPECT_EQ(canvas.ovalFills[2].color, palette.button);
}

TEST_F(DesktopQuickCapturePanelTest, HidesForARestartWithoutActivationOrTelemetry) {
  open("Draft");
  capture->hideForRestart();
  EXPECT_THAT(log().take(), ElementsAre("panel.orderOut"));
  EXPECT_THAT(telemetryNames(), Not(Contains("native_abandoned")));
  EXPECT_EQ(editor().text(), "Draft");
}

TEST_F(DesktopQuickCapturePanelTest, PreventsARestartWhileItHoldsText) {
  open();
  EXPECT_FALSE(capture->preventsRestart());
  editor().type(" \n ");
  EXPECT_FALSE(capture->preventsRestart());
  editor().type(" . ");
  EXPECT_TRUE(capture->preventsRestart());
  capture->hide(false);
  EXPECT_TRUE(capture->preventsRestart());
}

}  // namespace
}  // namespace navora
