#include "end_to_end/driver/Accessibility.h"

namespace navora::driver {

namespace {

constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";

// The accessibility bus is a separate bus; org.a11y.Bus starts it when asked for its address.
std::string accessibilityBusAddress(const std::string& sessionBusAddress) {
  BusConnection session(sessionBusAddress);
  const Variant reply = session.call(
      {"org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"}, nullptr, defaultTimeout());
  const char* address = nullptr;
  g_variant_get(reply.get(), "(&s)", &address);
  return address;
}

bool matches(const AccessibleObject& object, const AccessibleQuery& query) {
  return (query.role.empty() || object.role() == query.role) &&
         (query.name.empty() || object.name() == query.name) &&
         (!query.showing || object.has(AccessibleState::showing));
}

}  // namespace

std::string AccessibleQuery::describe() const {
  return "a " + (role.empty() ? std::string("widget") : role) +
         (name.empty() ? std::string() : " named \"" + name + "\"") +
         (showing ? " is on the screen" : " exists");
}

Accessibility::Accessibility(const std::string& sessionBusAddress)
    : bus_(std::make_shared<BusConnection>(accessibilityBusAddress(sessionBusAddress))) {}

std::vector<AccessibleObject> Accessibility::applications(pid_t pid) {
  auto found = AccessibleObject(bus_, "org.a11y.atspi.Registry", rootPath).children();
  if (pid == 0) return found;
  std::erase_if(found, [&](const AccessibleObject& application) {
    const Variant reply = bus_->tryCall({"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                         "org.freedesktop.DBus", "GetConnectionUnixProcessID"},
                                        g_variant_new("(s)", application.owner().c_str()));
    guint32 owner = 0;
    if (reply) g_variant_get(reply.get(), "(u)", &owner);
    return owner != static_cast<guint32>(pid);
  });
  return found;
}

bool Accessibility::walk(const AccessibleObject& object, int depth, const Visitor& visitor) {
  constexpr int deepest = 40;
  if (depth > deepest) return true;
  if (!visitor(object, depth)) return false;
  for (const AccessibleObject& child : object.children()) {
    if (child.owner() != object.owner()) continue;
    if (!walk(child, depth + 1, visitor)) return false;
  }
  return true;
}

std::vector<AccessibleObject> Accessibility::findAll(const AccessibleQuery& query,
                                                     const AccessibleObject& below) {
  std::vector<AccessibleObject> found;
  walk(below, 0, [&](const AccessibleObject& object, int depth) {
    if (depth > 0 && matches(object, query)) found.push_back(object);
    return true;
  });
  return found;
}

std::vector<AccessibleObject> Accessibility::findAll(const AccessibleQuery& query, pid_t pid) {
  std::vector<AccessibleObject> found;
  for (const AccessibleObject& application : applications(pid)) {
    const auto ofApplication = findAll(query, application);
    found.insert(found.end(), ofApplication.begin(), ofApplication.end());
  }
  return found;
}

std::optional<AccessibleObject> Accessibility::find(const AccessibleQuery& query,
                                                    const AccessibleObject& below) {
  std::optional<AccessibleObject> found;
  walk(below, 0, [&](const AccessibleObject& object, int depth) {
    if (depth > 0 && matches(object, query)) found = object;
    return !found;
  });
  return found;
}

std::optional<AccessibleObject> Accessibility::find(const AccessibleQuery& query, pid_t pid) {
  for (const AccessibleObject& application : applications(pid)) {
    if (auto found = find(query, application)) return found;
  }
  return std::nullopt;
}

AccessibleObject Accessibility::waitFor(const AccessibleQuery& query, pid_t pid,
                                        std::chrono::milliseconds timeout) {
  return navora::waitFor([&] { return find(query, pid); }, query.describe(), timeout,
                         [&] { return describe(pid); });
}

AccessibleObject Accessibility::waitFor(const AccessibleQuery& query, const AccessibleObject& below,
                                        std::chrono::milliseconds timeout) {
  return navora::waitFor([&] { return find(query, below); }, query.describe(), timeout,
                         [&] { return describe(); });
}

std::string Accessibility::describe(pid_t pid) {
  std::string outline;
  for (const AccessibleObject& application : applications(pid)) {
    walk(application, 0, [&](const AccessibleObject& object, int depth) {
      if (depth == 0 || object.has(AccessibleState::showing)) {
        outline += std::string(static_cast<std::size_t>(depth) * 2, ' ') + object.role() + " \"" +
                   object.name() + "\"\n";
      }
      return true;
    });
  }
  return outline;
}

}  // namespace navora::driver
