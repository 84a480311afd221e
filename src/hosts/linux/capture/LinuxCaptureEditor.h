#pragma once

#include <vector>

#include <gtkmm/cssprovider.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/textview.h>
#include <sigc++/connection.h>

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
  bool drawPlaceholder(const Cairo::RefPtr<Cairo::Context>& context);
  bool isEmpty() const;
  Glib::RefPtr<Pango::Layout> layoutOf(const Glib::ustring& text);
  void setLineHeight(double lineHeight);
  int textWidth() const;

  CaptureEditorDelegate& delegate_;
  Gtk::ScrolledWindow scroller_;
  Gtk::TextView view_;
  Glib::RefPtr<Gtk::TextBuffer> buffer_;
  TextUndo undo_;
  Glib::RefPtr<Gtk::CssProvider> css_;
  CaptureEditorStyle style_;
  Pango::FontDescription font_;
  std::string placeholder_;
  // Pixels added to the font's own line height to reach the style's.
  int lineExtra_ = 0;
  // The text that the input method is composing (preedit), which the buffer does not contain.
  std::string composition_;
  bool settingText_ = false;
  bool inUserAction_ = false;
  bool changedInUserAction_ = false;
  std::vector<sigc::connection> connections_;
  SignalConnection preedit_;
};

}  // namespace navora
