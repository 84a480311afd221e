#include "linux/support/FakeTray.h"

#include <algorithm>
#include <optional>

#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"

namespace navora {
namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";

FakeTray::Entry entryFrom(GVariant* child) {
  FakeTray::Entry entry;
  GVariant* list = nullptr;
  g_variant_get(child, "(i@a{sv}@av)", &entry.id, &list, nullptr);
  const GVariantPtr properties(list);
  const char* text = nullptr;
  if (g_variant_lookup(properties.get(), "label", "&s", &text) != FALSE) entry.label = text;
  if (g_variant_lookup(properties.get(), "type", "&s", &text) != FALSE) entry.type = text;
  gboolean enabled = TRUE;
  g_variant_lookup(properties.get(), "enabled", "b", &enabled);
  entry.enabled = enabled != FALSE;
  return entry;
}

}  // namespace

FakeTray::FakeTray(Manner manner)
    : manner_(manner),
      bus_(TestDesktop::sessionBusAddress()),
      node_(g_dbus_node_info_new_for_xml(
          "<node><interface name='org.kde.StatusNotifierWatcher'>"
          "<method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>"
          "</interface></node>",
          nullptr)) {
  static const GDBusInterfaceVTable table{&FakeTray::onCall, nullptr, nullptr, {}};
  object_ = g_dbus_connection_register_object(bus_.get(), "/StatusNotifierWatcher",
                                              node_->interfaces[0], &table, this, nullptr, nullptr);
  subscription_ =
      g_dbus_connection_signal_subscribe(bus_.get(), nullptr, nullptr, nullptr, nullptr, nullptr,
                                         G_DBUS_SIGNAL_FLAGS_NONE, onSignal, this, nullptr);
  bus_.ownName(watcherName);
}

FakeTray::~FakeTray() {
  g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
  g_dbus_connection_unregister_object(bus_.get(), object_);
  g_dbus_node_info_unref(node_);
}

bool FakeTray::has(const std::string& name) const {
  return std::ranges::find(names_, name) != names_.end();
}

int FakeTray::heard(const std::string& signal) const {
  const auto found = signals_.find(signal);
  return found == signals_.end() ? 0 : found->second;
}

void FakeTray::onCall(GDBusConnection*, const char*, const char*, const char*, const char*,
                      GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
  auto& tray = *static_cast<FakeTray*>(self);
  if (tray.manner_ == Manner::refusing) {
    return g_dbus_method_invocation_return_dbus_error(invocation, "org.navora.test.No", "No");
  }
  const char* name = nullptr;
  g_variant_get(parameters, "(&s)", &name);
  tray.names_.emplace_back(name);
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

void FakeTray::onSignal(GDBusConnection*, const char*, const char*, const char*, const char* signal,
                        GVariant*, gpointer self) {
  ++static_cast<FakeTray*>(self)->signals_[signal];
}

BusAnswer FakeTray::ask(const std::string& name, const char* path, const char* interface,
                        const char* method, GVariant* parameters) {
  std::optional<BusAnswer> answer;
  const auto finish = [](GObject* bus, GAsyncResult* result, gpointer target) {
    GErrorPtr error;
    GVariantPtr value(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, error.out()));
    *static_cast<std::optional<BusAnswer>*>(target) =
        BusAnswer{std::move(value), error ? error->message : ""};
  };
  g_dbus_connection_call(bus_.get(), name.c_str(), path, interface, method, parameters, nullptr,
                         G_DBUS_CALL_FLAGS_NONE, -1, nullptr, finish, &answer);
  // Waits without a time limit, because the reply is written into this frame. The call always
  // returns.
  while (!answer)
    g_main_context_iteration(nullptr, TRUE);
  return std::move(*answer);
}

GVariantPtr FakeTray::property(const std::string& name, const char* path, const char* interface,
                               const char* property) {
  const auto answer = ask(name, path, "org.freedesktop.DBus.Properties", "Get",
                          g_variant_new("(ss)", interface, property));
  if (!answer.value) return nullptr;
  const GVariantPtr wrapped(g_variant_get_child_value(answer.value.get(), 0));
  return GVariantPtr(g_variant_get_variant(wrapped.get()));
}

FakeTray::Layout FakeTray::layout(const std::string& name, const char* path) {
  const auto answer = ask(name, path, "com.canonical.dbusmenu", "GetLayout",
                          g_variant_new("(iias)", 0, -1, nullptr));
  EXPECT_TRUE(answer.value) << answer.error;
  if (!answer.value) return {};
  Layout layout;
  GVariant* list = nullptr;
  g_variant_get(answer.value.get(), "(u(i@a{sv}@av))", &layout.revision, nullptr, nullptr, &list);
  const GVariantPtr children(list);
  for (gsize index = 0; index < g_variant_n_children(list); ++index) {
    const GVariantPtr wrapped(g_variant_get_child_value(list, index));
    const GVariantPtr child(g_variant_get_variant(wrapped.get()));
    layout.entries.push_back(entryFrom(child.get()));
  }
  return layout;
}

}  // namespace navora
