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

// What to look for; empty members match everything.
struct AccessibleQuery {
  std::string role = {};
  std::string name = {};  // exact
  bool showing = true;    // only what is on the screen

  std::string describe() const;
};

// The native widgets of the programs on one desktop. Pages inside web views are left out: tests ask
// those through the page itself.
class Accessibility {
 public:
  explicit Accessibility(const std::string& sessionBusAddress);

  // Of one process, or of every program when `pid` is 0.
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
  // The showing widgets as an indented outline, for messages.
  std::string describe(pid_t pid = 0);

 private:
  // False from the visitor ends the walk.
  using Visitor = std::function<bool(const AccessibleObject&, int depth)>;
  bool walk(const AccessibleObject& object, int depth, const Visitor& visitor);

  std::shared_ptr<BusConnection> bus_;
};

}  // namespace navora::driver
