#include "end_to_end/driver/RecordedRequest.h"

#include <strings.h>

namespace navora::driver {

std::optional<std::string> RecordedRequest::header(std::string_view name) const {
  for (const auto& [each, value] : headers) {
    if (each.size() == name.size() && strncasecmp(each.data(), name.data(), name.size()) == 0) {
      return value;
    }
  }
  return std::nullopt;
}

std::string describe(const std::vector<RecordedRequest>& requests) {
  std::string text;
  for (const RecordedRequest& request : requests)
    text += request.describe() + "\n";
  return text;
}

}  // namespace navora::driver
