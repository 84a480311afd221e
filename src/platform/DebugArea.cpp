#include "platform/DebugArea.h"

#include <algorithm>
#include <array>
#include <utility>

#include "support/FatalError.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::array allAreas{DebugArea::navigation, DebugArea::capture, DebugArea::notifications,
                              DebugArea::updates, DebugArea::hotKey};

}  // namespace

std::string_view debugAreaName(DebugArea area) {
  switch (area) {
    case DebugArea::navigation:
      return "navigation";
    case DebugArea::capture:
      return "capture";
    case DebugArea::notifications:
      return "notifications";
    case DebugArea::updates:
      return "updates";
    case DebugArea::hotKey:
      return "hotkey";
  }
  fatalError("Unknown debug area", "DebugArea", __LINE__);
}

DebugRequest parseDebugRequest(std::string_view value) {
  DebugRequest request;
  for (const std::string& piece : split(value, ',')) {
    const std::string name = trimmed(piece);
    if (name.empty()) continue;
    if (name == "all") {
      request.areas.insert(allAreas.begin(), allAreas.end());
      continue;
    }
    const auto area = std::ranges::find(allAreas, name, debugAreaName);
    if (area == allAreas.end()) {
      request.unknown.push_back(name);
    } else {
      request.areas.insert(*area);
    }
  }
  return request;
}

std::optional<std::string> unknownDebugAreasMessage(const DebugRequest& request) {
  if (request.unknown.empty()) return std::nullopt;
  std::string message = "NAVORA_DEBUG names no area";
  for (const std::string& name : request.unknown)
    message += " \"" + name + '"';
  message += "; the areas are";
  for (const DebugArea area : allAreas)
    message += ' ' + std::string(debugAreaName(area)) + ',';
  return message + " and all together: all";
}

}  // namespace navora
