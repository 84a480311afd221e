#include "hosts/linux/bus/PortalRequest.h"

#include <algorithm>
#include <utility>

namespace navora {
namespace {

constexpr const char* requestInterface = "org.freedesktop.portal.Request";

std::string nextToken() {
  static unsigned count = 0;
  return "navora" + std::to_string(++count);
}

// Where the portal will put the request: it follows from the caller's name on the bus, so that the
// answer can be awaited before the question is asked.
std::string requestPath(GDBusConnection* bus, const std::string& token) {
  std::string sender = stringFrom(g_dbus_connection_get_unique_name(bus));
  if (sender.starts_with(':')) sender.erase(0, 1);
  std::ranges::replace(sender, '.', '_');
  return std::string(PortalRequest::portalPath) + "/request/" + sender + "/" + token;
}

}  // namespace

PortalRequest::PortalRequest(GDBusConnection* bus, const char* interface, const char* method,
                             const Arguments& arguments, OnResponse onResponse)
    : bus_(GObjectPtr<GDBusConnection>::retain(bus)),
      call_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())),
      onResponse_(std::move(onResponse)) {
  const std::string token = nextToken();
  path_ = requestPath(bus, token);
  subscription_ = g_dbus_connection_signal_subscribe(
      bus, portalName, requestInterface, "Response", path_.c_str(), nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE, onSignal, this, nullptr);
  g_dbus_connection_call(bus, portalName, portalPath, interface, method, arguments(token.c_str()),
                         G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, -1, call_.get(), onCalled,
                         this);
}

PortalRequest::~PortalRequest() {
  g_cancellable_cancel(call_.get());
  if (subscription_ == 0) return;
  g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
  // Nobody waits for the answer; a dialog of it disappears.
  closePortalObject(bus_.get(), path_, requestInterface);
}

void PortalRequest::onCalled(GObject* bus, GAsyncResult* result, gpointer self) {
  GError* failure = nullptr;
  const GVariantPtr answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &failure));
  const GErrorPtr error(failure);
  // Cancelled means that this object is gone.
  if (!error || g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE) return;
  static_cast<PortalRequest*>(self)->finish(nullptr);
}

void PortalRequest::onSignal(GDBusConnection*, const char*, const char*, const char*, const char*,
                             GVariant* parameters, gpointer self) {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ua{sv})")) == FALSE) return;
  guint32 refusal = 0;
  GVariant* results = nullptr;
  g_variant_get(parameters, "(u@a{sv})", &refusal, &results);
  const GVariantPtr owner(results);
  static_cast<PortalRequest*>(self)->finish(refusal == 0 ? results : nullptr);
}

void PortalRequest::finish(GVariant* results) {
  if (!onResponse_) return;
  g_dbus_connection_signal_unsubscribe(bus_.get(), std::exchange(subscription_, 0));
  // It may release this object.
  std::exchange(onResponse_, nullptr)(results);
}

void closePortalObject(GDBusConnection* bus, const std::string& path, const char* interface) {
  // Waiting keeps the connection until the message has gone out, even when nobody else does.
  const auto ignore = [](GObject* connection, GAsyncResult* result, gpointer) {
    const GVariantPtr answer(
        g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr));
  };
  g_dbus_connection_call(bus, PortalRequest::portalName, path.c_str(), interface, "Close", nullptr,
                         nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, ignore, nullptr);
}

}  // namespace navora
