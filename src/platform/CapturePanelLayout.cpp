#include <algorithm>

#include "platform/CapturePanelView.h"

namespace navora {

CapturePanelLayout::Frames CapturePanelLayout::framesIn(Size panel) const {
  const double editorWidth = panel.width - 2 * padding;
  const Rectangle editor{padding, panel.height - padding - editorHeight, editorWidth, editorHeight};
  const Rectangle button{panel.width - padding - buttonSize, padding, buttonSize, buttonSize};
  const double messageX = editor.x + messageIndent;
  const double messageWidth = std::max(button.x - messageButtonGap - messageX, 0.0);
  const Rectangle message{messageX, button.midY() - messageHeight / 2, messageWidth, messageHeight};
  return {editor, message, button};
}

}  // namespace navora
