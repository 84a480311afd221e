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
      systemIsDark_(userPrefersDark_ || themeIsDark()) {
  joinSharedBus(G_BUS_TYPE_SESSION, cancellable_.get(),
                [this](GObjectPtr<GDBusConnection> bus) { follow(std::move(bus)); });
}

ColorScheme::~ColorScheme() {
  g_cancellable_cancel(cancellable_.get());
  if (bus_) g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
  look(userPrefersDark_);
}

void ColorScheme::follow(GObjectPtr<GDBusConnection> bus) {
  bus_ = std::move(bus);
  subscription_ = g_dbus_connection_signal_subscribe(
      bus_.get(), portalName, settingsInterface, "SettingChanged", portalPath, appearanceNamespace,
      G_DBUS_SIGNAL_FLAGS_NONE, onChanged, this, nullptr);
  g_dbus_connection_call(bus_.get(), portalName, portalPath, settingsInterface, "Read",
                         g_variant_new("(ss)", appearanceNamespace, schemeKey),
                         G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(),
                         onRead, this);
}

// The value comes wrapped in one variant, or in two from older portals.
void ColorScheme::readPreference(GVariantPtr value) {
  while (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) != FALSE) {
    value.reset(g_variant_get_variant(value.get()));
  }
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32) == FALSE) return;
  const guint32 scheme = g_variant_get_uint32(value.get());
  preference_ = scheme == noPreference ? std::nullopt : std::optional(scheme == preferDark);
  const bool wasDark =
      std::exchange(systemIsDark_, preference_ ? *preference_ : userPrefersDark_ || themeIsDark());
  applyAppearance();
  if (systemIsDark_ != wasDark) systemChanged.emit(systemIsDark_);
}

void ColorScheme::setAppearance(WindowAppearance appearance) {
  appearance_ = appearance;
  applyAppearance();
}

void ColorScheme::applyAppearance() {
  look(appearance_ == WindowAppearance::system ? preference_.value_or(userPrefersDark_)
                                               : appearance_ == WindowAppearance::dark);
}

void ColorScheme::look(bool dark) {
  // The toolkit reads its whole theme again even when it is told what it knows.
  if (dark == toolkitPrefersDark()) return;
  g_object_set(gtk_settings_get_default(), darkProperty, dark ? TRUE : FALSE, nullptr);
}

void ColorScheme::onRead(GObject* bus, GAsyncResult* result, gpointer self) {
  const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
  // No reply after the end of the scheme either, which cancels the call.
  if (!reply) return;
  static_cast<ColorScheme*>(self)->readPreference(
      GVariantPtr(g_variant_get_child_value(reply.get(), 0)));
}

void ColorScheme::onChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                            GVariant* parameters, gpointer self) {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)")) == FALSE) return;
  const char* key = nullptr;
  g_variant_get_child(parameters, 1, "&s", &key);
  if (std::string_view(key) != schemeKey) return;
  static_cast<ColorScheme*>(self)->readPreference(
      GVariantPtr(g_variant_get_child_value(parameters, 2)));
}

}  // namespace navora
