#include "capture/CapturePanelGeometry.h"

#include <algorithm>
#include <cmath>

#include "platform/CapturePanelView.h"

namespace navora {
namespace {

constexpr double screenMargin = 20;
// Top edge of the panel, as a fraction of the visible height.
constexpr double openingLevel = 0.68;
constexpr double editorShareOfScreen = 0.4;
constexpr double editorHeightWithoutScreen = 280;
// In multiples of the font size.
constexpr double smallestEditor = 3.4;
constexpr double smallestMessageWidth = 160;
constexpr double smallestMessageHeight = 14;
constexpr double gapAboveButton = 21;

}  // namespace

std::optional<Screen> CapturePanelGeometry::screen(const std::vector<Screen>& screens,
                                                   const std::optional<Screen>& mainScreen,
                                                   Point mouse) {
  const auto under = std::ranges::find_if(
      screens, [&](const Screen& screen) { return screen.frame.contains(mouse); });
  return under != screens.end() ? std::optional(*under) : mainScreen;
}

Rectangle CapturePanelGeometry::openingFrame(const Rectangle& visibleFrame) {
  const double width = std::min(visibleFrame.width - 2 * screenMargin, initialSize.width);
  return {visibleFrame.midX() - width / 2,
          visibleFrame.y + visibleFrame.height * openingLevel - initialSize.height, width,
          initialSize.height};
}

double CapturePanelGeometry::largestEditorHeight(const std::optional<Rectangle>& visibleFrame) {
  return visibleFrame ? visibleFrame->height * editorShareOfScreen : editorHeightWithoutScreen;
}

double CapturePanelGeometry::editorHeight(double textHeight, double fontSize, double largest) {
  const double smallest = std::ceil(fontSize * smallestEditor);
  const double wanted = std::ceil(textHeight + 2 * CapturePanelLayout::editorInset);
  return std::min(std::max(wanted, smallest), largest);
}

double CapturePanelGeometry::messageWidth(double panelWidth, double padding) {
  constexpr double besideMessage = CapturePanelLayout::messageIndent +
                                   CapturePanelLayout::messageButtonGap +
                                   CapturePanelLayout::buttonSize;
  return std::max(panelWidth - 2 * padding - besideMessage, smallestMessageWidth);
}

double CapturePanelGeometry::messageHeight(double textHeight) {
  return std::max(std::ceil(std::min(textHeight, CapturePanelView::maximumMessageHeight)),
                  smallestMessageHeight);
}

double CapturePanelGeometry::panelHeight(double editorHeight, double messageHeight,
                                         double padding) {
  return editorHeight + 2 * padding + gapAboveButton +
         std::max(messageHeight, CapturePanelLayout::buttonSize);
}

Rectangle CapturePanelGeometry::withHeight(const Rectangle& frame, double height) {
  return {frame.x, frame.maxY() - height, frame.width, height};
}

}  // namespace navora
