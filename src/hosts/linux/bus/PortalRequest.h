#pragma once

#include <functional>
#include <string>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// One request to xdg-desktop-portal, which may ask the user before it responds. Destroying it
// closes the request; `onResponse` is not called.
class PortalRequest {
 public:
  static constexpr const char* portalName = "org.freedesktop.portal.Desktop";
  static constexpr const char* portalPath = "/org/freedesktop/portal/desktop";

  // Returns the arguments of the call, a floating tuple, with the token as the option
  // "handle_token".
  using Arguments = std::function<GVariant*(const char* handleToken)>;
  // Receives the results ("a{sv}"), or null if the call failed or the user refused. Called once,
  // after the constructor has returned; may destroy the request.
  using OnResponse = std::function<void(GVariant* results)>;

  PortalRequest(GDBusConnection* bus, const char* interface, const char* method,
                const Arguments& arguments, OnResponse onResponse);
  ~PortalRequest();
  PortalRequest(const PortalRequest&) = delete;
  PortalRequest& operator=(const PortalRequest&) = delete;

 private:
  static void onCalled(GObject* bus, GAsyncResult* result, gpointer self);
  static void onSignal(GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant* parameters, gpointer self);
  void finish(GVariant* results);

  GObjectPtr<GDBusConnection> bus_;
  GObjectPtr<GCancellable> call_;
  OnResponse onResponse_;
  std::string path_;
  guint subscription_ = 0;
};

// Calls Close on a request or session of the portal and ignores the reply.
void closePortalObject(GDBusConnection* bus, const std::string& path, const char* interface);

}  // namespace navora
