#pragma once

#include <string>
#include <utility>
#include <vector>

namespace navora {

// The calls that one FakePlatform's interfaces received, in order, as "interface.operation detail".
// Calls that only read are not recorded.
class EventLog {
 public:
  void record(std::string event) { events_.push_back(std::move(event)); }

  const std::vector<std::string>& events() const { return events_; }

  // Returns the events recorded so far and clears the log.
  std::vector<std::string> take() { return std::exchange(events_, {}); }

 private:
  std::vector<std::string> events_;
};

}  // namespace navora
