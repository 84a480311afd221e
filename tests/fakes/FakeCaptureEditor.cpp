#include "fakes/FakeCaptureEditor.h"

#include <algorithm>
#include <utility>

#include "support/FatalError.h"

namespace navora {

void FakeCaptureEditor::type(const std::string& text) {
  if (!editable_) fatalError("The editor is read-only", "FakeCaptureEditor", __LINE__);
  text_ = text;
  delegate_.editorTextDidChange();
}

void FakeCaptureEditor::loseFocus() {
  focused_ = false;
  delegate_.editorDidChangeFocus(false);
}

void FakeCaptureEditor::compose(const std::string& text) {
  if (!editable_) fatalError("The editor is read-only", "FakeCaptureEditor", __LINE__);
  composition_ = text;
  delegate_.editorCompositionDidChange();
}

void FakeCaptureEditor::commitComposition() {
  if (composition_.empty()) return;
  log_.record("editor.commitComposition");
  text_ += std::exchange(composition_, {});
  delegate_.editorTextDidChange();
}

void FakeCaptureEditor::setText(const std::string& text) {
  log_.record(text.empty() ? "editor.clear" : "editor.setText " + text);
  composition_.clear();
  text_ = text;
}

void FakeCaptureEditor::makeFirstResponder() {
  log_.record("editor.makeFirstResponder");
  if (focused_) return;
  focused_ = true;
  delegate_.editorDidChangeFocus(true);
}

double FakeCaptureEditor::textHeight(double) {
  const auto lines = 1 + std::ranges::count(text_, '\n') + std::ranges::count(composition_, '\n');
  return static_cast<double>(lines) * style_.lineHeight;
}

}  // namespace navora
