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

// Of the bus itself.
constexpr BusMethod busDaemonMethod(const char* name) {
  return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", name};
}

// What came back: one of both is null. A reply of another type than was asked for is an error.
using BusReply = std::function<void(GVariant* reply, const GError* error)>;

// As long as the callee lives.
inline constexpr std::chrono::milliseconds noTimeout{0};

// Calls the method; the reply comes once, later. `parameters` is a tuple, consumed when floating.
void callBus(GDBusConnection* bus, const BusMethod& method, GVariant* parameters,
             const char* replyType, std::chrono::milliseconds timeout, BusReply reply);

}  // namespace navora
