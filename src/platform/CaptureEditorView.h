#pragma once

#include <string>

#include "platform/Color.h"
#include "platform/KeyEvent.h"

namespace navora {

enum class FontFamily { sans, serif, mono };

// How the editor's text looks.
struct CaptureEditorStyle {
  FontFamily family = FontFamily::sans;
  // Points.
  double fontSize = 17;
  // The smallest height of a line; also of those that were typed under another style.
  double lineHeight = 0;
  Color ink;
  Color caret;
  Color placeholder;

  bool operator==(const CaptureEditorStyle&) const = default;
};

class CaptureEditorDelegate {
 public:
  virtual ~CaptureEditorDelegate() = default;

  // A key press on its way to the editor; `composing` while an input method holds uncommitted text.
  // True keeps it from the editor.
  virtual bool editorKeyDown(const KeyEvent& event, bool composing) = 0;
  // The same for combinations with the desktop's main modifier, which come here first on platforms
  // that tell them apart.
  virtual bool editorKeyEquivalent(const KeyEvent& event, bool composing) = 0;
  // After the user changed the text, whether typed, pasted, dropped or undone. Not for `clear`.
  virtual void editorTextDidChange() = 0;
  virtual void editorDidChangeFocus(bool focused) = 0;
};

// The plain text editor of the capture panel: undo, the platform's input methods, an overlay
// scroller that hides itself, no background of its own.
class CaptureEditorView {
 public:
  virtual ~CaptureEditorView() = default;

  // UTF-8, line breaks as "\n".
  virtual std::string text() const = 0;
  // Empties the text, and what undo could bring back.
  virtual void clear() = 0;
  virtual void setEditable(bool editable) = 0;
  virtual void setStyle(const CaptureEditorStyle& style) = 0;
  // Shown while the text is empty and nothing is being composed.
  virtual void setPlaceholder(const std::string& text) = 0;
  virtual void setAccessibilityLabel(const std::string& label) = 0;

  virtual void makeFirstResponder() = 0;
  virtual void moveCaretToEnd() = 0;

  // The height of the laid-out text at the editor's present width, with an empty line after a final
  // line break, without the insets. Exact below `enough`; a text that is at least so high gives
  // some height that is, too, so that nobody lays out what makes no difference.
  virtual double textHeight(double enough) = 0;
};

}  // namespace navora
