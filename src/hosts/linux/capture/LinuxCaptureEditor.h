#pragma once

#include <vector>

#include <gtkmm/cssprovider.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/textview.h>
#include <sigc++/connection.h>

#include "hosts/linux/capture/LineHeights.h"
#include "hosts/linux/capture/TextUndo.h"
#include "hosts/linux/system/GLibSupport.h"
#include "platform/CaptureEditorView.h"

namespace navora {

class LinuxCaptureEditor final : public CaptureEditorView {
 public:
  // The delegate must outlive the editor.
  explicit LinuxCaptureEditor(CaptureEditorDelegate& delegate);
  ~LinuxCaptureEditor() override;

  Gtk::ScrolledWindow& widget() { return scroller_; }
  Gtk::TextView& textView() { return view_; }
  bool isComposing() const { return !composition_.empty(); }
  // Offers the input method a key that the panel or the core could act on; returns whether it takes
  // it. A key of any other kind reaches the input method through the text view. An input method
  // that shows its text or its candidates in a window of its own uses keys while isComposing() is
  // false.
  bool inputMethodTakes(const GdkEventKey& event);
  // Sets the width of the empty strip at the right of the text, in pixels, where the scroll bar is
  // shown. The widget must be wider by as much.
  void setScrollBarSpace(int width);
  // Handles the keys of undo and redo and Shift+Tab; returns false for any other key.
  bool handleKey(const GdkEventKey& event);

  std::string text() const override;
  void setText(const std::string& text) override;
  void setEditable(bool editable) override;
  void setStyle(const CaptureEditorStyle& style) override;
  void setPlaceholder(const std::string& text) override;
  void setAccessibilityLabel(const std::string& label) override;
  void commitComposition() override;
  void makeFirstResponder() override;
  void moveCaretToEnd() override;
  double textHeight(double enough) override;

 private:
  static void onPreeditChanged(GtkTextView*, const char* text, gpointer self);
  void connectBuffer();
  void connectView();
  void textChanged();
  void insert(const std::string& text);
  void endComposition();
  void sendFocusChange(bool in);
  bool isEcho(const Glib::ustring& text) const;
  bool drawPlaceholder(const Cairo::RefPtr<Cairo::Context>& context);
  bool isEmpty() const;
  Glib::RefPtr<Pango::Layout> layoutOf(const Glib::ustring& text);
  void setLineHeight(double lineHeight);
  void keepTextWidth(int viewWidth);
  // The width of the lines as the view shows them, and as the editor's size asks for them.
  int laidOutWidth() const;
  int textWidth() const;
  int lineHeight(int line);
  int laidOutHeight(const Gtk::TextIter& begin, const Gtk::TextIter& end);
  int measuredHeight(const Gtk::TextIter& begin, const Gtk::TextIter& end);

  CaptureEditorDelegate& delegate_;
  Gtk::ScrolledWindow scroller_;
  Gtk::TextView view_;
  Glib::RefPtr<Gtk::TextBuffer> buffer_;
  TextUndo undo_;
  LineHeights heights_;
  int scrollBarSpace_ = 0;
  // The width in pixels that the heights are for.
  int heightsWidth_ = 0;
  Glib::RefPtr<Gtk::CssProvider> css_;
  CaptureEditorStyle style_;
  Pango::FontDescription font_;
  std::string placeholder_;
  // Pixels added to the font's own line height to reach the style's.
  int lineExtra_ = 0;
  // The text that the input method is composing (preedit), which the buffer does not contain.
  std::string composition_;
  // What commitComposition() inserted, until the user does something else.
  std::string ownCommit_;
  bool layoutIsOutdated_ = false;
  bool isEndingComposition_ = false;
  bool settingText_ = false;
  bool inUserAction_ = false;
  bool changedInUserAction_ = false;
  std::vector<sigc::connection> connections_;
  SignalConnection preedit_;
};

}  // namespace navora
