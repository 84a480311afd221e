#include <gtest/gtest.h>

#include "platform/DebugArea.h"

namespace navora {
namespace {

using Areas = std::set<DebugArea>;

TEST(DebugAreaTest, AnEmptyValueTurnsNothingOn) {
  EXPECT_EQ(parseDebugRequest(""), DebugRequest{});
  EXPECT_EQ(parseDebugRequest(" , ,"), DebugRequest{});
}

TEST(DebugAreaTest, NamesAreSeparatedByCommas) {
  EXPECT_EQ(parseDebugRequest("navigation, capture,navigation"),
            (DebugRequest{Areas{DebugArea::navigation, DebugArea::capture}, {}}));
}

TEST(DebugAreaTest, EveryAreaHasANameOfItsOwn) {
  const Areas all = parseDebugRequest("all").areas;
  EXPECT_EQ(all.size(), 5U);
  for (const DebugArea area : all)
    EXPECT_EQ(parseDebugRequest(debugAreaName(area)).areas, Areas{area}) << debugAreaName(area);
}

TEST(DebugAreaTest, ReportsUnknownNamesAndKeepsTheOthers) {
  const DebugRequest request = parseDebugRequest("Navigation,hotkey,1");
  EXPECT_EQ(request, (DebugRequest{Areas{DebugArea::hotKey}, {"Navigation", "1"}}));
  EXPECT_EQ(unknownDebugAreasMessage(request),
            "NAVORA_DEBUG names no area \"Navigation\" \"1\"; the areas are navigation, capture, "
            "notifications, updates, hotkey, and all together: all");
  EXPECT_EQ(unknownDebugAreasMessage(parseDebugRequest("all")), std::nullopt);
}

}  // namespace
}  // namespace navora
