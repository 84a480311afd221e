#include <string>

#include <gtest/gtest.h>
#include <gtkmm/clipboard.h>
#include <gtkmm/scrolledwindow.h>

#include "linux/capture/CapturePanelTest.h"

namespace navora {
namespace {

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int index = 0; index < count; ++index)
    result += text;
  return result;
}

class LinuxCaptureEditorTest : public CapturePanelTest {
 protected:
  CaptureEditorView& editor() { return panel_->editor(); }
  Glib::RefPtr<Gtk::TextBuffer> buffer() { return panel_->textView().get_buffer(); }
  void paste(const std::string& text) {
    const auto clipboard = Gtk::Clipboard::get();
    clipboard->set_text(text);
    buffer()->paste_clipboard(clipboard);
  }
};

TEST_F(LinuxCaptureEditorTest, ReportsEveryChangeExceptClear) {
  ASSERT_TRUE(open());
  keyboard_.type("ab");
  ASSERT_TRUE(waitForText("ab"));
  EXPECT_EQ(delegate_.textChanges, 2);
  editor().clear();
  EXPECT_EQ(editor().text(), "");
  EXPECT_EQ(delegate_.textChanges, 2);
}

TEST_F(LinuxCaptureEditorTest, ReportsAReplacementAndItsUndoAsOneChangeEach) {
  ASSERT_TRUE(open());
  keyboard_.type("ab");
  ASSERT_TRUE(waitForText("ab"));
  keyboard_.chord("Control+a");
  keyboard_.type("x");
  ASSERT_TRUE(waitForText("x"));
  EXPECT_EQ(delegate_.textChanges, 3);
  keyboard_.chord("Control+z");
  ASSERT_TRUE(waitForText("ab"));
  EXPECT_EQ(delegate_.textChanges, 4);
}

TEST_F(LinuxCaptureEditorTest, NormalizesPastedLineBreaks) {
  ASSERT_TRUE(open());
  paste("one\r\ntwo\n");
  EXPECT_TRUE(waitForText("one\ntwo\n"));
  EXPECT_EQ(delegate_.textChanges, 1);
}

TEST_F(LinuxCaptureEditorTest, AlignsItsTextWithTheMessage) {
  panel_->setMessage("Message");
  ASSERT_TRUE(open());
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(panel_->message()); }));
  Gdk::Rectangle caret;
  panel_->textView().get_iter_location(buffer()->begin(), caret);
  int x = 0;
  int y = 0;
  panel_->textView().buffer_to_window_coords(Gtk::TEXT_WINDOW_WIDGET, caret.get_x(), caret.get_y(),
                                             x, y);
  EXPECT_EQ(onScreen(panel_->textView()).x + x, onScreen(panel_->message()).x);
}

TEST_F(LinuxCaptureEditorTest, DoesNotOpenGtksEmojiChooser) {
  ASSERT_TRUE(open());
  g_signal_emit_by_name(panel_->textView().gobj(), "insert-emoji");
  // GTK keeps an opened chooser as data of the view.
  EXPECT_EQ(g_object_get_data(G_OBJECT(panel_->textView().gobj()), "gtk-emoji-chooser"), nullptr);
}

TEST_F(LinuxCaptureEditorTest, CommitsTheCompositionWhenThePanelIsOrderedOut) {
  ASSERT_TRUE(open());
  g_signal_emit_by_name(panel_->textView().gobj(), "preedit-changed", "か");
  panel_->orderOut();
  EXPECT_EQ(editor().text(), "か");
  EXPECT_EQ(delegate_.textChanges, 1);
  ASSERT_TRUE(waitUntil([&] { return !delegate_.focused; }));
  ASSERT_TRUE(open());
  keyboard_.type("x");
  ASSERT_TRUE(waitForText("かx"));
  EXPECT_FALSE(delegate_.composing);
}

TEST_F(LinuxCaptureEditorTest, CommitsTheCompositionInPlaceOfTheSelectionAsOneStep) {
  ASSERT_TRUE(open());
  buffer()->set_text("one two");
  buffer()->select_range(buffer()->begin(), buffer()->get_iter_at_offset(3));
  const int before = delegate_.textChanges;
  g_signal_emit_by_name(panel_->textView().gobj(), "preedit-changed", "かな");
  editor().commitComposition();
  EXPECT_EQ(editor().text(), "かな two");
  EXPECT_EQ(delegate_.textChanges, before + 1);
  editor().commitComposition();
  EXPECT_EQ(editor().text(), "かな two");
  keyboard_.chord("Control+z");
  EXPECT_TRUE(waitForText("one two"));
}

// A dead key is composed by the toolkit's own input method, which discards it when it is reset.
TEST_F(LinuxCaptureEditorTest, CommitsADeadKey) {
  std::string composition;
  g_signal_connect(panel_->textView().gobj(), "preedit-changed",
                   G_CALLBACK(+[](GtkTextView*, const char* text, gpointer last) {
                     *static_cast<std::string*>(last) = text;
                   }),
                   &composition);
  ASSERT_TRUE(open());
  keyboard_.chord("dead_acute");
  ASSERT_TRUE(waitUntil([&] { return !composition.empty(); }));
  editor().commitComposition();
  EXPECT_EQ(editor().text(), "\u00B4") << composition;
  keyboard_.type("e");
  EXPECT_TRUE(waitForText("\u00B4e"));
}

TEST_F(LinuxCaptureEditorTest, AcceptsEveryScriptAndEmoji) {
  ASSERT_TRUE(open());
  const std::string text = "Привет, 世界 שלום \U0001F642";
  keyboard_.type(text);
  EXPECT_TRUE(waitForText(text));
}

TEST_F(LinuxCaptureEditorTest, UndoesAndRedoesByWords) {
  ASSERT_TRUE(open());
  keyboard_.type("one two");
  ASSERT_TRUE(waitForText("one two"));
  keyboard_.chord("Control+z");
  EXPECT_TRUE(waitForText("one "));
  keyboard_.chord("Control+z");
  EXPECT_TRUE(waitForText(""));
  keyboard_.chord("Control+Shift+z");
  EXPECT_TRUE(waitForText("one "));
  keyboard_.chord("Control+y");
  EXPECT_TRUE(waitForText("one two"));
}

TEST_F(LinuxCaptureEditorTest, ClearDiscardsTheUndoSteps) {
  ASSERT_TRUE(open());
  keyboard_.type("secret");
  ASSERT_TRUE(waitForText("secret"));
  editor().clear();
  keyboard_.chord("Control+z");
  keyboard_.type("x");
  EXPECT_TRUE(waitForText("x"));
}

TEST_F(LinuxCaptureEditorTest, CanBeCopiedFromButNotChangedWhileNotEditable) {
  ASSERT_TRUE(open());
  keyboard_.type("note");
  ASSERT_TRUE(waitForText("note"));
  editor().setEditable(false);
  keyboard_.type("x");
  keyboard_.chord("Control+z");
  keyboard_.chord("Control+a");
  keyboard_.chord("Control+c");
  ASSERT_TRUE(waitUntil([] { return Gtk::Clipboard::get()->wait_for_text() == "note"; }));
  EXPECT_EQ(editor().text(), "note");
  editor().setEditable(true);
  keyboard_.type("y");
  EXPECT_TRUE(waitForText("y"));
}

TEST_F(LinuxCaptureEditorTest, ReportsComposingWithEveryKey) {
  ASSERT_TRUE(open());
  g_signal_emit_by_name(panel_->textView().gobj(), "preedit-changed", "か");
  keyboard_.chord("Return");
  ASSERT_TRUE(waitUntil([&] { return !delegate_.keys.empty(); }));
  EXPECT_TRUE(delegate_.composing);
  delegate_.keys.clear();
  g_signal_emit_by_name(panel_->textView().gobj(), "preedit-changed", "");
  keyboard_.chord("Return");
  ASSERT_TRUE(waitUntil([&] { return !delegate_.keys.empty(); }));
  EXPECT_FALSE(delegate_.composing);
}

TEST_F(LinuxCaptureEditorTest, ShowsThePlaceholderOnlyWhileEmpty) {
  editor().setPlaceholder("MMMMMMMM");
  ASSERT_TRUE(open());
  const auto bluePixels = [&] { return shot().pixelsLike({0, 0, 255}, 60); };
  EXPECT_TRUE(waitUntil([&] { return bluePixels() > 100; }));
  keyboard_.type("x");
  EXPECT_TRUE(waitUntil([&] { return bluePixels() == 0; }));
  keyboard_.chord("BackSpace");
  EXPECT_TRUE(waitUntil([&] { return bluePixels() > 100; }));
  g_signal_emit_by_name(panel_->textView().gobj(), "preedit-changed", "か");
  EXPECT_TRUE(waitUntil([&] { return bluePixels() == 0; }));
}

TEST_F(LinuxCaptureEditorTest, MeasuresLinesInTheStylesLineHeight) {
  ASSERT_TRUE(open());
  EXPECT_EQ(editor().textHeight(4000), 25);
  buffer()->set_text("one\ntwo");
  EXPECT_EQ(editor().textHeight(4000), 50);
  buffer()->set_text("one\ntwo\n");
  EXPECT_EQ(editor().textHeight(4000), 75);
  buffer()->set_text(repeated("word ", 60));
  EXPECT_GE(editor().textHeight(4000), 75);
  // The view lays the text out with the measured height.
  ASSERT_TRUE(waitUntil([&] {
    Gdk::Rectangle last;
    panel_->textView().get_iter_location(buffer()->end(), last);
    int y = 0;
    int height = 0;
    panel_->textView().get_line_yrange(buffer()->begin(), y, height);
    return height == editor().textHeight(4000);
  }));
}

TEST_F(LinuxCaptureEditorTest, StopsMeasuringALongTextOnceItIsHighEnough) {
  ASSERT_TRUE(open());
  paste(repeated("A line of some length that is repeated\n", 25'000));
  ASSERT_TRUE(waitUntil([&] { return buffer()->get_char_count() > 900'000; }));
  EXPECT_GT(editor().textHeight(4000), 4000);
  EXPECT_LT(editor().textHeight(4000), 100'000);
}

TEST_F(LinuxCaptureEditorTest, BreaksItsLinesAtTheSamePlacesBesideAScrollBar) {
  ASSERT_TRUE(open());
  Gtk::TextView& view = panel_->textView();
  const auto lineEnd = [&] {
    auto end = buffer()->begin();
    view.forward_display_line_end(end);
    return end.get_offset();
  };
  const std::string words = "The boat leaves at nine and anyone who wants to join us is welcome. ";
  buffer()->set_text(repeated(words, 2));
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(view); }));
  auto& scroller = dynamic_cast<Gtk::ScrolledWindow&>(*view.get_parent());
  const int before = lineEnd();
  const int width = scroller.get_allocated_width();
  buffer()->set_text(repeated(words, 40));
  ASSERT_TRUE(waitUntil([&] { return view.get_allocated_width() < width; })) << "no scroll bar";
  EXPECT_EQ(lineEnd(), before);
  keyboard_.type("x");
  ASSERT_TRUE(waitUntil([&] { return buffer()->get_text().find('x') != Glib::ustring::npos; }));
  runPendingEvents();
  EXPECT_EQ(scroller.get_allocated_width(), width);
  EXPECT_LT(view.get_allocated_width(), width);
}

TEST_F(LinuxCaptureEditorTest, MovesTheCaretToTheEnd) {
  buffer()->set_text("Draft");
  buffer()->place_cursor(buffer()->begin());
  ASSERT_TRUE(open());
  editor().moveCaretToEnd();
  keyboard_.type("!");
  EXPECT_TRUE(waitForText("Draft!"));
}

TEST_F(LinuxCaptureEditorTest, UsesTheFontOfItsStyle) {
  buffer()->set_text("iiiiiiii");
  ASSERT_TRUE(open());
  const auto caret = [&] {
    Gdk::Rectangle place;
    panel_->textView().get_iter_location(buffer()->end(), place);
    return place.get_x();
  };
  const int sans = caret();
  CaptureEditorStyle changed = style();
  changed.family = FontFamily::mono;
  editor().setStyle(changed);
  EXPECT_TRUE(waitUntil([&] { return caret() > sans; }));
  editor().setStyle(style());
  ASSERT_TRUE(waitUntil([&] { return caret() == sans; }));
  changed = style();
  changed.fontSize = 30;
  editor().setStyle(changed);
  EXPECT_TRUE(waitUntil([&] { return caret() > sans; }));
}

}  // namespace
}  // namespace navora
