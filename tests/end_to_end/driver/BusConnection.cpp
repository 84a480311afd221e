#include "end_to_end/driver/BusConnection.h"

#include "tests/support/Wait.h"

namespace navora::driver {

namespace {

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";

std::string takeMessage(GError* error) {
  std::string message = error ? error->message : "unknown error";
  if (error) g_error_free(error);
  return message;
}

}  // namespace

BusConnection::BusConnection(const std::string& address) {
  GError* error = nullptr;
  const auto flags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  connection_ =
      g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, &error);
  if (!connection_) throw TestError("Cannot connect to the bus: " + takeMessage(error));
  g_dbus_connection_set_exit_on_close(connection_, FALSE);
}

BusConnection::~BusConnection() {
  g_dbus_connection_close_sync(connection_, nullptr, nullptr);
  g_object_unref(connection_);
}

Variant BusConnection::send(const Call& call, GVariant* parameters,
                            std::chrono::milliseconds timeout, std::string* failure) {
  GError* error = nullptr;
  Variant reply(g_dbus_connection_call_sync(
      connection_, call.destination.c_str(), call.path.c_str(), call.interface.c_str(),
      call.method.c_str(), parameters, nullptr, G_DBUS_CALL_FLAGS_NONE,
      static_cast<int>(timeout.count()), nullptr, &error));
  if (!reply) {
    const std::string message = takeMessage(error);
    if (failure) *failure = call.interface + "." + call.method + ": " + message;
  }
  return reply;
}

Variant BusConnection::call(const Call& call, GVariant* parameters,
                            std::chrono::milliseconds timeout) {
  std::string failure;
  Variant reply = send(call, parameters, timeout, &failure);
  if (!reply) throw TestError(failure);
  return reply;
}

Variant BusConnection::tryCall(const Call& call, GVariant* parameters,
                               std::chrono::milliseconds timeout) {
  return send(call, parameters, timeout, nullptr);
}

Variant BusConnection::tryProperty(const std::string& destination, const std::string& path,
                                   const std::string& interface, const std::string& property) {
  const Variant reply = tryCall({destination, path, "org.freedesktop.DBus.Properties", "Get"},
                                g_variant_new("(ss)", interface.c_str(), property.c_str()));
  if (!reply) return nullptr;
  GVariant* value = nullptr;
  g_variant_get(reply.get(), "(v)", &value);
  return Variant(value);
}

void BusConnection::ownName(const std::string& name) {
  constexpr guint32 doNotQueue = 4;
  constexpr guint32 primaryOwner = 1;
  const Variant reply = call({busName, busPath, busName, "RequestName"},
                             g_variant_new("(su)", name.c_str(), doNotQueue));
  guint32 result = 0;
  g_variant_get(reply.get(), "(u)", &result);
  if (result != primaryOwner) throw TestError("The bus name " + name + " is taken");
}

void BusConnection::releaseName(const std::string& name) {
  tryCall({busName, busPath, busName, "ReleaseName"}, g_variant_new("(s)", name.c_str()));
}

bool BusConnection::nameHasOwner(const std::string& name) {
  const Variant reply =
      call({busName, busPath, busName, "NameHasOwner"}, g_variant_new("(s)", name.c_str()));
  gboolean owned = FALSE;
  g_variant_get(reply.get(), "(b)", &owned);
  return owned != FALSE;
}

void BusConnection::emitSignal(const std::string& path, const std::string& interface,
                               const std::string& signal, GVariant* parameters) {
  GError* error = nullptr;
  if (!g_dbus_connection_emit_signal(connection_, nullptr, path.c_str(), interface.c_str(),
                                     signal.c_str(), parameters, &error) ||
      !g_dbus_connection_flush_sync(connection_, nullptr, &error)) {
    throw TestError("Cannot emit " + signal + ": " + takeMessage(error));
  }
}

}  // namespace navora::driver
