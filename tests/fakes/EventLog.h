#pragma once

#include <string>
#include <utility>
#include <vector>

namespace navora {

// What happened at the fake doors of one platform, in order: "door.operation detail". Reads of a
// door are not recorded.
class EventLog {
 public:
  void record(std::string event) { events_.push_back(std::move(event)); }

  const std::vector<std::string>& events() const { return events_; }

  // The events up to now; the log starts anew.
  std::vector<std::string> take() { return std::exchange(events_, {}); }

 private:
  std::vector<std::string> events_;
};

}  // namespace navora
