#include "hosts/linux/keyboard/GlobalShortcutsPortal.h"

#include <iostream>
#include <utility>

namespace navora {
namespace {

constexpr const char* interface = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* shortcutId = "capture";
constexpr int timeoutMilliseconds = 2000;

GObjectPtr<GDBusConnection> sessionBus() {
  return GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
}

const char* nameOfKey(std::uint16_t keyCode) {
  switch (keyCode) {
    case KeyEvent::spaceKey:
      return "space";
    case KeyEvent::returnKey:
      return "Return";
    case KeyEvent::keypadEnterKey:
      return "KP_Enter";
    case KeyEvent::escapeKey:
      return "Escape";
    default:
      return "";
  }
}

void addText(GVariantBuilder& options, const char* name, const char* text) {
  g_variant_builder_add(&options, "{sv}", name, g_variant_new_string(text));
}

}  // namespace

std::string shortcutTrigger(const HotKey& hotKey) {
  const std::string key = nameOfKey(hotKey.keyCode);
  if (key.empty()) return {};
  std::string trigger;
  // The main modifier, Command, is Control here.
  if ((hotKey.carbonModifiers & HotKey::carbonCommand) != 0) trigger += "CTRL+";
  if ((hotKey.carbonModifiers & HotKey::carbonOption) != 0) trigger += "ALT+";
  if ((hotKey.carbonModifiers & HotKey::carbonShift) != 0) trigger += "SHIFT+";
  return trigger + key;
}

bool GlobalShortcutsPortal::isAvailable() {
  const auto bus = sessionBus();
  if (!bus) return false;
  const GVariantPtr version(g_dbus_connection_call_sync(
      bus.get(), PortalRequest::portalName, PortalRequest::portalPath,
      "org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", interface, "version"),
      G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE, timeoutMilliseconds, nullptr, nullptr));
  return version != nullptr;
}

GlobalShortcutsPortal::GlobalShortcutsPortal(const HotKey& hotKey, const std::string& description,
                                             std::function<void()> onPressed)
    : trigger_(shortcutTrigger(hotKey)),
      description_(description),
      onPressed_(std::move(onPressed)),
      bus_(sessionBus()) {
  if (!bus_) return;
  // Subscribes first, so that no activation is missed.
  activations_ = g_dbus_connection_signal_subscribe(
      bus_.get(), PortalRequest::portalName, interface, "Activated", PortalRequest::portalPath,
      nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onActivated, this, nullptr);
  createSession();
}

GlobalShortcutsPortal::~GlobalShortcutsPortal() {
  if (!bus_) return;
  g_dbus_connection_signal_unsubscribe(bus_.get(), activations_);
  request_.reset();
  if (!session_.empty()) closePortalObject(bus_.get(), session_, sessionInterface);
}

void GlobalShortcutsPortal::createSession() {
  request_ = std::make_unique<PortalRequest>(
      bus_.get(), interface, "CreateSession",
      [](const char* handleToken) {
        GVariantBuilder options;
        g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
        addText(options, "handle_token", handleToken);
        addText(options, "session_handle_token", handleToken);
        return g_variant_new("(a{sv})", &options);
      },
      [this](GVariant* results) { sessionCreated(results); });
}

void GlobalShortcutsPortal::sessionCreated(GVariant* results) {
  const char* session = nullptr;
  if (results == nullptr || g_variant_lookup(results, "session_handle", "&s", &session) == FALSE ||
      g_variant_is_object_path(session) == FALSE) {
    std::cerr << "Navora: the desktop has no system-wide shortcut for this program\n";
    return;
  }
  session_ = session;
  bindShortcut();
}

void GlobalShortcutsPortal::bindShortcut() {
  request_ = std::make_unique<PortalRequest>(
      bus_.get(), interface, "BindShortcuts",
      [this](const char* handleToken) {
        GVariantBuilder properties;
        g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
        addText(properties, "description", description_.c_str());
        if (!trigger_.empty()) addText(properties, "preferred_trigger", trigger_.c_str());
        GVariantBuilder shortcuts;
        g_variant_builder_init(&shortcuts, G_VARIANT_TYPE("a(sa{sv})"));
        g_variant_builder_add(&shortcuts, "(sa{sv})", shortcutId, &properties);
        GVariantBuilder options;
        g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
        addText(options, "handle_token", handleToken);
        return g_variant_new("(oa(sa{sv})sa{sv})", session_.c_str(), &shortcuts, "", &options);
      },
      [](GVariant* results) {
        if (results == nullptr) std::cerr << "Navora: the system-wide shortcut was refused\n";
      });
}

void GlobalShortcutsPortal::onActivated(GDBusConnection*, const char*, const char*, const char*,
                                        const char*, GVariant* parameters, gpointer self) {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(osta{sv})")) == FALSE) return;
  const char* session = nullptr;
  const char* shortcut = nullptr;
  g_variant_get(parameters, "(&o&sta{sv})", &session, &shortcut, nullptr, nullptr);
  const auto& portal = *static_cast<GlobalShortcutsPortal*>(self);
  if (portal.session_ != session || g_strcmp0(shortcut, shortcutId) != 0) return;
  // A copy, because the call may destroy the portal.
  const auto onPressed = portal.onPressed_;
  onPressed();
}

}  // namespace navora
