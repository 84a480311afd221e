#include "hosts/linux/tray/LinuxStatusItem.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <string_view>
#include <utility>
#include <variant>

#include <unistd.h>

#include "hosts/linux/bus/BusCall.h"
#include "hosts/linux/bus/SharedBus.h"
#include "hosts/linux/system/ApplicationId.h"
#include "hosts/linux/tray/StatusIcon.h"
#include "hosts/linux/window/ColorScheme.h"

namespace navora {
namespace {

constexpr const char* path = "/StatusNotifierItem";
constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr BusMethod registration{watcherName, "/StatusNotifierWatcher",
                                 "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem"};

constexpr const char* itemInterface = R"xml(<node><interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/>
  <property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/>
  <property name="IconThemePath" type="s" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <property name="OverlayIconName" type="s" access="read"/>
  <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionIconName" type="s" access="read"/>
  <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionMovieName" type="s" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="Menu" type="o" access="read"/>
  <method name="ContextMenu"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
  <method name="Activate"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
  <method name="SecondaryActivate">
    <arg type="i" direction="in"/><arg type="i" direction="in"/>
  </method>
  <method name="Scroll"><arg type="i" direction="in"/><arg type="s" direction="in"/></method>
  <signal name="NewTitle"/>
  <signal name="NewIcon"/>
  <signal name="NewAttentionIcon"/>
  <signal name="NewOverlayIcon"/>
  <signal name="NewToolTip"/>
  <signal name="NewStatus"><arg type="s"/></signal>
</interface></node>)xml";

const std::string symbolicIconName = std::string(applicationId) + "-symbolic";

bool isMissingService(const GError& error) {
  constexpr std::array codes{G_DBUS_ERROR_NO_REPLY, G_DBUS_ERROR_SERVICE_UNKNOWN,
                             G_DBUS_ERROR_NAME_HAS_NO_OWNER};
  return std::ranges::any_of(
      codes, [&](int code) { return g_error_matches(&error, G_DBUS_ERROR, code) != FALSE; });
}

GVariant* noPixmaps() {
  return g_variant_new_array(G_VARIANT_TYPE("(iiay)"), nullptr, 0);
}

// Returns a name that was not used before: if a name changes its owner at once, trays take the new
// item for the old one.
std::string nextBusName() {
  static int count = 0;
  return "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-" + std::to_string(++count);
}

}  // namespace

void MissingTrayWarning::logOnce() {
  if (std::exchange(logged_, true)) return;
  std::cerr << "Navora: the desktop has no tray for status items\n";
}

LinuxStatusItem::LinuxStatusItem(const StatusItemDescription& description, MenuDelegate& delegate,
                                 ApplicationCommands commands, ColorScheme& colorScheme,
                                 MissingTrayWarning& missingTray, std::filesystem::path iconThemes)
    : description_(description),
      delegate_(delegate),
      commands_(std::move(commands)),
      colorScheme_(colorScheme),
      missingTray_(missingTray),
      busName_(nextBusName()),
      iconThemes_(std::move(iconThemes)),
      hasSymbolicIcon_(std::filesystem::exists(iconThemes_ / "hicolor/symbolic/apps" /
                                               (symbolicIconName + ".svg"))),
      joining_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())) {
  joinSharedBus(
      G_BUS_TYPE_SESSION, joining_.get(),
      [this](GObjectPtr<GDBusConnection> bus) { exportOn(std::move(bus)); },
      [this] { missingTray_.logOnce(); });
}

LinuxStatusItem::~LinuxStatusItem() {
  g_cancellable_cancel(joining_.get());
  schemeChanges_.disconnect();
  if (trayWatch_ != 0) g_bus_unwatch_name(trayWatch_);
  if (ownedName_ != 0) g_bus_unown_name(ownedName_);
}

void LinuxStatusItem::exportOn(GObjectPtr<GDBusConnection> bus) {
  drawIcon();
  menu_.emplace(bus.get(), description_.menu, [this](const MenuItem& item) { choose(item); });
  object_.emplace(bus.get(), path, itemInterface,
                  BusObject::Implementation{
                      [this](const char* method, GVariant*, GDBusMethodInvocation* invocation) {
                        call(method, invocation);
                      },
                      [this](const char* name) { return property(name); }});
  schemeChanges_ = colorScheme_.systemChanged.connect([this](bool) {
    drawIcon();
    object_->emit("NewIcon", nullptr);
  });
  // The bus processes the requests of a connection in order, so the name is owned before it is
  // registered with the tray.
  ownedName_ = g_bus_own_name_on_connection(
      bus.get(), busName_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
  trayWatch_ = g_bus_watch_name_on_connection(bus.get(), watcherName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                              onTrayAppeared, onTrayVanished, this, nullptr);
}

void LinuxStatusItem::drawIcon() {
  icon_.reset(
      g_variant_ref_sink(statusIconPixmaps(*description_.image, colorScheme_.systemIsDark())));
}

void LinuxStatusItem::onTrayAppeared(GDBusConnection* bus, const char*, const char*,
                                     gpointer self) {
  const std::string& name = static_cast<LinuxStatusItem*>(self)->busName_;
  callBus(bus, registration, g_variant_new("(s)", name.c_str()), "()", noTimeout,
          [](GVariant*, const GError* error) {
            // A tray that has exited meanwhile is reported by onTrayVanished().
            if (error == nullptr || isMissingService(*error)) return;
            std::cerr << "Navora: the tray refuses the status item: " << error->message << "\n";
          });
}

void LinuxStatusItem::onTrayVanished(GDBusConnection*, const char*, gpointer self) {
  static_cast<LinuxStatusItem*>(self)->missingTray_.logOnce();
}

void LinuxStatusItem::insertMenuItem(std::size_t index, const MenuItem& item) {
  auto& items = description_.menu.items;
  const auto position = static_cast<std::ptrdiff_t>(std::min(index, items.size()));
  items.insert(items.begin() + position, item);
  if (menu_) menu_->insert(index, item);
}

void LinuxStatusItem::choose(const MenuItem& item) {
  if (const auto* action = std::get_if<DelegateAction>(&*item.action))
    return delegate_.performMenuAction(*action);
  if (const auto* action = std::get_if<ApplicationAction>(&*item.action))
    commands_.perform(*action);
}

void LinuxStatusItem::call(const char* method, GDBusMethodInvocation* invocation) {
  const std::string_view name(method);
  g_dbus_method_invocation_return_value(invocation, nullptr);
  // The tray shows the menu itself, so ContextMenu needs no action; neither does Scroll.
  if (name == "Activate" || name == "SecondaryActivate")
    delegate_.performMenuAction(DelegateAction::showWindow);
}

GVariant* LinuxStatusItem::property(const char* name) const {
  const std::string_view wanted(name);
  const char* title = description_.accessibilityLabel.c_str();
  if (wanted == "Category") return g_variant_new_string("ApplicationStatus");
  if (wanted == "Id") return g_variant_new_string(applicationId);
  if (wanted == "Title") return g_variant_new_string(title);
  if (wanted == "Status") return g_variant_new_string("Active");
  if (wanted == "WindowId") return g_variant_new_int32(0);
  // Panels recolour a symbolic icon, because only they know their own colour. The pixmaps are for
  // panels that know no names or do not find the icon.
  if (wanted == "IconName" && hasSymbolicIcon_)
    return g_variant_new_string(symbolicIconName.c_str());
  if (wanted == "IconThemePath") return g_variant_new_string(iconThemes_.c_str());
  if (wanted == "IconPixmap") return g_variant_ref(icon_.get());
  if (wanted == "ToolTip") return g_variant_new("(s@a(iiay)ss)", "", noPixmaps(), title, "");
  if (wanted == "ItemIsMenu") return g_variant_new_boolean(FALSE);
  if (wanted == "Menu") return g_variant_new_object_path(DBusMenu::path);
  // The item uses neither overlays nor attention icons.
  if (wanted.ends_with("Pixmap")) return noPixmaps();
  return g_variant_new_string("");
}

}  // namespace navora
