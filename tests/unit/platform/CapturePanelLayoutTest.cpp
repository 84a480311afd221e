#include <gtest/gtest.h>

#include "platform/CapturePanelView.h"

namespace navora {
namespace {

TEST(CapturePanelLayout, PlacesEditorMessageAndButtonInThePanel) {
  const CapturePanelLayout layout{.padding = 24, .editorHeight = 58, .messageHeight = 14};
  const auto frames = layout.framesIn({800, 165});
  EXPECT_EQ(frames.editor, (Rectangle{24, 83, 752, 58}));
  EXPECT_EQ(frames.button, (Rectangle{738, 24, 38, 38}));
  EXPECT_EQ(frames.message, (Rectangle{29, 36, 691, 14}));
}

TEST(CapturePanelLayout, NeverGivesTheMessageANegativeWidth) {
  const CapturePanelLayout layout{.padding = 48, .editorHeight = 58, .messageHeight = 14};
  EXPECT_EQ(layout.framesIn({120, 165}).message.width, 0);
}

}  // namespace
}  // namespace navora
