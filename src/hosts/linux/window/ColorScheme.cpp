#include "hosts/linux/window/ColorScheme.h"

#include <string_view>
#include <utility>

#include <gtk/gtk.h>

#include "hosts/linux/bus/SharedBus.h"

namespace navora {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* appearanceNamespace = "org.freedesktop.appearance";
constexpr const char* schemeKey = "color-scheme";
constexpr guint32 noPreference = 0;
constexpr guint32 preferDark = 1;
constexpr const char* darkProperty = "gtk-application-prefer-dark-theme";

bool toolkitPrefersDark() {
  gboolean preferred = FALSE;
  g_object_get(gtk_settings_get_default(), darkProperty, &preferred, nullptr);
  return preferred != FALSE;
}

bool themeIsDark() {
  char* name = nullptr;
  g_object_get(gtk_settings_get_default(), "gtk-theme-name", &name, nullptr);
  const GCharPtr theme(name);
  return stringFrom(theme.get()).ends_with("-dark");
}

}  // namespace

ColorScheme::ColorScheme()
    : cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())),
      userPrefersDark_(toolkitPrefersDark()),
      systemIsDark_(isDesktopDark()) {
  joinSharedBus(G_BUS_TYPE_SESSION, cancellable_.get(),
                [this](GObjectPtr<GDBusConnection> bus) { subscribe(std::move(bus)); });
}

ColorScheme::~ColorScheme() {
  g_cancellable_cancel(cancellable_.get());
  if (bus_) g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
  setDark(userPrefersDark_);
}

void ColorScheme::subscribe(GObjectPtr<GDBusConnection> bus) {
  bus_ = std::move(bus);
  subscription_ = g_dbus_connection_signal_subscribe(
      bus_.get(), portalName, settingsInterface, "SettingChanged", portalPath, appearanceNamespace,
      G_DBUS_SIGNAL_FLAGS_NONE, onChanged, this, nullptr);
  g_dbus_connection_call(bus_.get(), portalName, portalPath, settingsInterface, "Read",
                         g_variant_new("(ss)", appearanceNamespace, schemeKey),
                         G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(),
                         onRead, this);
}

bool ColorScheme::isDesktopDark() const {
  return preference_ ? *preference_ : userPrefersDark_ || themeIsDark();
}

// The value is wrapped in one variant, or in two by the portal's deprecated method Read.
void ColorScheme::preferenceReceived(GVariantPtr value) {
  while (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) != FALSE) {
    value.reset(g_variant_get_variant(value.get()));
  }
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32) == FALSE) return;
  const guint32 scheme = g_variant_get_uint32(value.get());
  preference_ = scheme == noPreference ? std::nullopt : std::optional(scheme == preferDark);
  const bool wasDark = std::exchange(systemIsDark_, isDesktopDark());
  applyAppearance();
  if (systemIsDark_ != wasDark) systemChanged.emit(systemIsDark_);
}

void ColorScheme::setAppearance(WindowAppearance appearance) {
  appearance_ = appearance;
  applyAppearance();
}

void ColorScheme::applyAppearance() {
  setDark(appearance_ == WindowAppearance::system ? preference_.value_or(userPrefersDark_)
                                                  : appearance_ == WindowAppearance::dark);
}

void ColorScheme::setDark(bool dark) {
  // GTK reloads the whole theme even if the value does not change.
  if (dark == toolkitPrefersDark()) return;
  g_object_set(gtk_settings_get_default(), darkProperty, dark ? TRUE : FALSE, nullptr);
}

void ColorScheme::onRead(GObject* bus, GAsyncResult* result, gpointer self) {
  const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
  // Null after a failure, and after the destructor has cancelled the call: `self` is then deleted.
  if (!reply) return;
  static_cast<ColorScheme*>(self)->preferenceReceived(
      GVariantPtr(g_variant_get_child_value(reply.get(), 0)));
}

void ColorScheme::onChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                            GVariant* parameters, gpointer self) {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)")) == FALSE) return;
  const char* key = nullptr;
  g_variant_get_child(parameters, 1, "&s", &key);
  if (std::string_view(key) != schemeKey) return;
  static_cast<ColorScheme*>(self)->preferenceReceived(
      GVariantPtr(g_variant_get_child_value(parameters, 2)));
}

}  // namespace navora
