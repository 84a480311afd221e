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

// Returns the object path that the portal will give the request. It is derived from the caller's
// unique name and the token (org.freedesktop.portal.Request), so that the Response signal can be
// subscribed to before the call.
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
  // Makes the portal close its dialog.
  closePortalObject(bus_.get(), path_, requestInterface);
}

void PortalRequest::onCalled(GObject* bus, GAsyncResult* result, gpointer self) {
  GErrorPtr error;
  const GVariantPtr reply(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, error.out()));
  // The destructor cancels the call, so `self` is dangling then.
  if (!error || error.matches(G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
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
  // The callback may destroy this object.
  std::exchange(onResponse_, nullptr)(results);
}

void closePortalObject(GDBusConnection* bus, const std::string& path, const char* interface) {
  // The pending reply holds a reference to the connection, so the message is sent even if this was
  // the last other one.
  const auto ignore = [](GObject* connection, GAsyncResult* result, gpointer) {
    const GVariantPtr reply(
        g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr));
  };
  g_dbus_connection_call(bus, PortalRequest::portalName, path.c_str(), interface, "Close", nullptr,
                         nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, ignore, nullptr);
}

}  // namespace navora
