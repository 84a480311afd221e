#pragma once

#include <functional>
#include <string>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// One question to the desktop's portal, which may ask the user before it answers. Going, it
// withdraws the question and tells nothing.
class PortalRequest {
 public:
  static constexpr const char* portalName = "org.freedesktop.portal.Desktop";
  static constexpr const char* portalPath = "/org/freedesktop/portal/desktop";

  // Makes the arguments of the call; the token belongs among its options, as "handle_token".
  using Arguments = std::function<GVariant*(const char* handleToken)>;
  // The results ("a{sv}"), or null when the portal or the user has refused. Called once, later; the
  // request may be released inside of it.
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

// Ends a request or a session of the portal, without waiting for the answer.
void closePortalObject(GDBusConnection* bus, const std::string& path, const char* interface);

}  // namespace navora
