#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "end_to_end/driver/AccessibleObject.h"
#include "tests/support/Wait.h"

namespace navora::driver {

// Which widgets to find; empty members match everything.
struct AccessibleQuery {
  std::string role = {};
  std::string name = {};  // compared exactly
  bool showing = true;    // visible widgets only

  std::string describe() const;
};

// Finds native widgets of the programs on a desktop. Pages in web views are skipped: tests use
// PageDriver for those.
class Accessibility {
 public:
  explicit Accessibility(const std::string& sessionBusAddress);

  // In the following, a `pid` of 0 means every program.
  std::vector<AccessibleObject> applications(pid_t pid = 0);
  std::vector<AccessibleObject> findAll(const AccessibleQuery& query, pid_t pid = 0);
  std::vector<AccessibleObject> findAll(const AccessibleQuery& query,
                                        const AccessibleObject& below);
  std::optional<AccessibleObject> find(const AccessibleQuery& query, pid_t pid = 0);
  std::optional<AccessibleObject> find(const AccessibleQuery& query, const AccessibleObject& below);
  AccessibleObject waitFor(const AccessibleQuery& query, pid_t pid = 0,
                           std::chrono::milliseconds timeout = defaultTimeout());
  AccessibleObject waitFor(const AccessibleQuery& query, const AccessibleObject& below,
                           std::chrono::milliseconds timeout = defaultTimeout());
  // Returns the visible widgets as an indented outline, for messages.
  std::string describe(pid_t pid = 0);

 private:
  // Returns false to end the walk.
  using Visitor = std::function<bool(const AccessibleObject&, int depth)>;
  bool walk(const AccessibleObject& object, int depth, const Visitor& visitor);

  std::shared_ptr<BusConnection> bus_;
};

}  // namespace navora::driver
