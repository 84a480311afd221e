#pragma once

#include <optional>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Workspace.h"

namespace navora {

// Where the panel opens and how it grows with its text. Pure functions.
class CapturePanelGeometry {
 public:
  static constexpr Size initialSize{800, 165};

  // The screen with the pointer, else the main one.
  static std::optional<Screen> screen(const std::vector<Screen>& screens,
                                      const std::optional<Screen>& mainScreen, Point mouse);
  static Rectangle openingFrame(const Rectangle& visibleFrame);

  // `visibleFrame` is that of the panel's screen, if it is on one.
  static double largestEditorHeight(const std::optional<Rectangle>& visibleFrame);
  // The limit wins over the smallest height.
  static double editorHeight(double textHeight, double fontSize, double largest);
  static double messageWidth(double panelWidth, double padding);
  static double messageHeight(double textHeight);
  static double panelHeight(double editorHeight, double messageHeight, double padding);
  // The same top edge, another height.
  static Rectangle withHeight(const Rectangle& frame, double height);
};

}  // namespace navora
