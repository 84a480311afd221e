#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace navora::driver {

// One HTTP request as a server received it.
struct RecordedRequest {
  std::size_t sequence = 0;  // grows by one with every request of a server
  std::string method;
  std::string target;  // path and query as sent
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;

  std::string path() const { return target.substr(0, target.find('?')); }
  // The first header of that name, whose case does not matter.
  std::optional<std::string> header(std::string_view name) const;
  // One line, for messages.
  std::string describe() const { return method + " " + target; }
};

std::string describe(const std::vector<RecordedRequest>& requests);

}  // namespace navora::driver
