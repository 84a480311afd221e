#pragma once

#include <string>

#include "fakes/EventLog.h"
#include "platform/CaptureEditorView.h"

namespace navora {

// An editor in which the test types. Lines have the height of the style and never wrap.
class FakeCaptureEditor final : public CaptureEditorView {
 public:
  FakeCaptureEditor(EventLog& log, CaptureEditorDelegate& delegate)
      : log_(log), delegate_(delegate) {}

  bool isEditable() const { return editable_; }
  bool isFocused() const { return focused_; }
  const CaptureEditorStyle& style() const { return style_; }
  const std::string& placeholder() const { return placeholder_; }
  const std::string& accessibilityLabel() const { return accessibilityLabel_; }

  // Acts as the user replacing the text. A fatal error if the editor is not editable.
  void type(const std::string& text);
  // Return whether the delegate consumed the key.
  bool press(const KeyEvent& event, bool composing = false) const {
    return delegate_.editorKeyDown(event, composing);
  }
  bool pressEquivalent(const KeyEvent& event, bool composing = false) const {
    return delegate_.editorKeyEquivalent(event, composing);
  }
  void loseFocus();
  // Acts as an input method that composes this text at the end of the editor's. A fatal error if
  // the editor is not editable.
  void compose(const std::string& text);

  std::string text() const override { return text_; }
  void setText(const std::string& text) override;
  void setEditable(bool editable) override { editable_ = editable; }
  void setStyle(const CaptureEditorStyle& style) override { style_ = style; }
  void setPlaceholder(const std::string& text) override { placeholder_ = text; }
  void setAccessibilityLabel(const std::string& label) override { accessibilityLabel_ = label; }
  void commitComposition() override;
  void makeFirstResponder() override;
  void moveCaretToEnd() override { log_.record("editor.moveCaretToEnd"); }
  double textHeight(double) override;

 private:
  EventLog& log_;
  CaptureEditorDelegate& delegate_;
  std::string text_;
  std::string composition_;
  bool editable_ = true;
  bool focused_ = false;
  CaptureEditorStyle style_;
  std::string placeholder_;
  std::string accessibilityLabel_;
};

}  // namespace navora
