#pragma once

#include <string>

#include "platform/Color.h"
#include "platform/KeyEvent.h"

namespace navora {

enum class FontFamily { sans, serif, mono };

// The appearance of the editor's text.
struct CaptureEditorStyle {
  FontFamily family = FontFamily::sans;
  // Points.
  double fontSize = 17;
  // Minimum line height in points. Applies to existing text too.
  double lineHeight = 0;
  Color ink;
  Color caret;
  Color placeholder;

  bool operator==(const CaptureEditorStyle&) const = default;
};

// Receives the editor's events. Called on the main thread.
class CaptureEditorDelegate {
 public:
  virtual ~CaptureEditorDelegate() = default;

  // Called before the editor handles a key press; `composing` is true while an input method holds
  // uncommitted text. Returns true to consume the event.
  virtual bool editorKeyDown(const KeyEvent& event, bool composing) = 0;
  // The same for key equivalents (combinations with the main modifier), on platforms that dispatch
  // them before ordinary key presses.
  virtual bool editorKeyEquivalent(const KeyEvent& event, bool composing) = 0;
  // Called after the user changed the text by typing, pasting, dropping or undoing; not after
  // clear() and setText().
  virtual void editorTextDidChange() = 0;
  // Called after the text that an input method is composing changed, on platforms where text() does
  // not contain it; textHeight() includes it.
  virtual void editorCompositionDidChange() = 0;
  virtual void editorDidChangeFocus(bool focused) = 0;
};

// The plain text editor of the capture panel, with undo, the platform's input methods, an
// auto-hiding overlay scroller and no background.
class CaptureEditorView {
 public:
  virtual ~CaptureEditorView() = default;

  // Returns the text as UTF-8 with "\n" line breaks.
  virtual std::string text() const = 0;
  // Replaces the text and removes the undo history.
  virtual void setText(const std::string& text) = 0;
  // Removes the text and the undo history.
  void clear() { setText({}); }
  virtual void setEditable(bool editable) = 0;
  virtual void setStyle(const CaptureEditorStyle& style) = 0;
  // Sets the text shown while the editor is empty and nothing is being composed.
  virtual void setPlaceholder(const std::string& text) = 0;
  virtual void setAccessibilityLabel(const std::string& label) = 0;

  // Commits the text that an input method is composing, as if the user had accepted it; reports it
  // with editorTextDidChange() where text() did not contain it. Does nothing while none is
  // composed.
  virtual void commitComposition() = 0;

  virtual void makeFirstResponder() = 0;
  virtual void moveCaretToEnd() = 0;

  // Returns the height in points of the text, with what is being composed, laid out at the editor's
  // current width, including the empty line after a final line break, excluding the insets. Exact
  // below `enough`; taller text may return any value >= `enough`, so that layout can stop early.
  virtual double textHeight(double enough) = 0;
};

}  // namespace navora
