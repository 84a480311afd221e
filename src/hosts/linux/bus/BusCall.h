#pragma once

#include <chrono>
#include <functional>

#include <gio/gio.h>

namespace navora {

// A method of an object on a message bus.
struct BusMethod {
  const char* destination;
  const char* path;
  const char* interface;
  const char* name;
};

// Returns a method of the message bus itself (org.freedesktop.DBus).
constexpr BusMethod busDaemonMethod(const char* name) {
  return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", name};
}

// Receives the reply or the error; the other is null. A reply of an unexpected type is an error.
using BusReply = std::function<void(GVariant* reply, const GError* error)>;

// Waits for the reply as long as the callee is on the bus.
inline constexpr std::chrono::milliseconds noTimeout{0};

// Calls a method with `parameters`, a tuple, which is consumed if floating. Calls `reply` once,
// after this function has returned, with a value of type `replyType`.
void callBus(GDBusConnection* bus, const BusMethod& method, GVariant* parameters,
             const char* replyType, std::chrono::milliseconds timeout, BusReply reply);

}  // namespace navora
