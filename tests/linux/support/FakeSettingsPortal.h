#pragma once

#include <functional>
#include <utility>

#include <gtest/gtest.h>

#include "end_to_end/driver/BusConnection.h"
#include "linux/support/TestDesktop.h"

namespace navora {

// A settings portal (org.freedesktop.portal.Settings) that runs in the test's main loop.
class FakeSettingsPortal {
 public:
  static constexpr const char* path = "/org/freedesktop/portal/desktop";
  static constexpr const char* interface = "org.freedesktop.portal.Settings";
  static constexpr const char* appearance = "org.freedesktop.appearance";

  // `value` returns the reply to Read; null makes it an error.
  explicit FakeSettingsPortal(std::function<GVariant*()> value)
      : value_(std::move(value)), bus_(TestDesktop::sessionBusAddress()) {
    static const GDBusInterfaceVTable table{&FakeSettingsPortal::onCall, nullptr, nullptr, {}};
    node_ = g_dbus_node_info_new_for_xml(
        "<node><interface name='org.freedesktop.portal.Settings'><method name='Read'>"
        "<arg type='s' direction='in'/><arg type='s' direction='in'/>"
        "<arg type='v' direction='out'/></method></interface></node>",
        nullptr);
    g_dbus_connection_register_object(bus_.get(), path, node_->interfaces[0], &table, this, nullptr,
                                      nullptr);
    bus_.ownName("org.freedesktop.portal.Desktop");
  }
  ~FakeSettingsPortal() { g_dbus_node_info_unref(node_); }
  FakeSettingsPortal(const FakeSettingsPortal&) = delete;
  FakeSettingsPortal& operator=(const FakeSettingsPortal&) = delete;

  void announce(const char* settingNamespace, const char* key, GVariant* value) {
    bus_.emitSignal(path, interface, "SettingChanged",
                    g_variant_new("(ssv)", settingNamespace, key, value));
  }
  int reads() const { return reads_; }

 private:
  static void onCall(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
    auto& portal = *static_cast<FakeSettingsPortal*>(self);
    ++portal.reads_;
    const char* settingNamespace = nullptr;
    const char* key = nullptr;
    g_variant_get(parameters, "(&s&s)", &settingNamespace, &key);
    EXPECT_STREQ(settingNamespace, appearance);
    EXPECT_STREQ(key, "color-scheme");
    if (GVariant* value = portal.value_()) {
      g_dbus_method_invocation_return_value(invocation, g_variant_new("(v)", value));
    } else {
      g_dbus_method_invocation_return_dbus_error(
          invocation, "org.freedesktop.portal.Error.NotFound", "No such setting");
    }
  }

  std::function<GVariant*()> value_;
  int reads_ = 0;
  GDBusNodeInfo* node_ = nullptr;
  driver::BusConnection bus_;
};

}  // namespace navora
