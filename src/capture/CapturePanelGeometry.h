#pragma once

#include <optional>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Workspace.h"

namespace navora {

// Computes where the panel opens and how it grows with its text. Pure functions; lengths in points.
class CapturePanelGeometry {
 public:
  static constexpr Size initialSize{800, 165};

  // Returns the screen that contains `mouse`, or the main screen if none does.
  static std::optional<Screen> screen(const std::vector<Screen>& screens,
                                      const std::optional<Screen>& mainScreen, Point mouse);
  static Rectangle openingFrame(const Rectangle& visibleFrame);

  // `visibleFrame` is that of the panel's screen, nullopt if the panel is on no screen.
  static double largestEditorHeight(const std::optional<Rectangle>& visibleFrame);
  // Returns at least the minimum height, but never more than `largest`.
  static double editorHeight(double textHeight, double fontSize, double largest);
  static double messageWidth(double panelWidth, double padding);
  static double messageHeight(double textHeight);
  static double panelHeight(double editorHeight, double messageHeight, double padding);
  // Returns `frame` with another height and the same top edge.
  static Rectangle withHeight(const Rectangle& frame, double height);
};

}  // namespace navora
