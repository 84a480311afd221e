#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace navora {

// The subjects of the debug log, which the environment variable NAVORA_DEBUG turns on by name.
enum class DebugArea { navigation, capture, notifications, updates, hotKey };

// Returns the area's name in NAVORA_DEBUG and in the log.
std::string_view debugAreaName(DebugArea area);

struct DebugRequest {
  std::set<DebugArea> areas;
  // Names that are not an area's, in the order in which they were given.
  std::vector<std::string> unknown;

  bool operator==(const DebugRequest&) const = default;
};

// Parses a value of NAVORA_DEBUG: names separated by commas, or "all". White space around names and
// empty names are ignored.
DebugRequest parseDebugRequest(std::string_view value);

// Returns the line that reports the unknown names of a request, or nullopt if there are none.
std::optional<std::string> unknownDebugAreasMessage(const DebugRequest& request);

}  // namespace navora
