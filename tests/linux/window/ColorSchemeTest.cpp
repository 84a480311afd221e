#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "hosts/linux/window/ColorScheme.h"
#include "linux/support/FakeSettingsPortal.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"

namespace navora {
namespace {

constexpr const char* portalPath = FakeSettingsPortal::path;
constexpr const char* settingsInterface = FakeSettingsPortal::interface;
constexpr const char* appearance = FakeSettingsPortal::appearance;

GVariant* number(guint32 value) {
  return g_variant_new_uint32(value);
}

// Waits until every signal that the portal has emitted is dispatched: signals of one sender keep
// their order, and all observers of this process share one connection.
class SettingsListener {
 public:
  SettingsListener()
      : bus_(GObjectPtr<GDBusConnection>::adopt(
            g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr))),
        subscription_(g_dbus_connection_signal_subscribe(
            bus_.get(), nullptr, settingsInterface, "SettingChanged", portalPath, "marker",
            G_DBUS_SIGNAL_FLAGS_NONE, &SettingsListener::onMarker, this, nullptr)) {}
  ~SettingsListener() { g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_); }
  SettingsListener(const SettingsListener&) = delete;
  SettingsListener& operator=(const SettingsListener&) = delete;

  testing::AssertionResult waitForMarker(FakeSettingsPortal& portal) const {
    portal.announce("marker", "marker", number(0));
    const auto received = waitUntil([this] { return received_; });
    runPendingEvents();
    return received;
  }

 private:
  static void onMarker(GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant*, gpointer self) {
    static_cast<SettingsListener*>(self)->received_ = true;
  }

  bool received_ = false;
  GObjectPtr<GDBusConnection> bus_;
  guint subscription_;
};

class ColorSchemeTest : public testing::Test {
 protected:
  void TearDown() override { setDark(false); }

  static bool isDark() {
    gboolean dark = FALSE;
    g_object_get(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", &dark, nullptr);
    return dark != FALSE;
  }
  static void setDark(bool dark) {
    g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme",
                 dark ? TRUE : FALSE, nullptr);
  }
  // Repeats the signal, because the observer may not have subscribed yet.
  testing::AssertionResult announceUntilDark(FakeSettingsPortal& portal, bool dark) {
    return waitUntil([&] {
      if (isDark() == dark) return true;
      portal.announce(appearance, "color-scheme", number(dark ? 1 : 2));
      return false;
    });
  }
};

TEST_F(ColorSchemeTest, ReadsThePreference) {
  FakeSettingsPortal portal([] { return number(1); });
  const ColorScheme scheme;
  EXPECT_TRUE(waitUntil(isDark));
}

TEST_F(ColorSchemeTest, ReadsADoublyWrappedPreference) {
  FakeSettingsPortal portal([] { return g_variant_new_variant(number(1)); });
  const ColorScheme scheme;
  EXPECT_TRUE(waitUntil(isDark));
}

TEST_F(ColorSchemeTest, PreferringLightOverridesADarkSetting) {
  setDark(true);
  FakeSettingsPortal portal([] { return number(2); });
  const ColorScheme scheme;
  EXPECT_TRUE(waitUntil([] { return !isDark(); }));
}

TEST_F(ColorSchemeTest, FollowsChanges) {
  FakeSettingsPortal portal([] { return number(2); });
  const ColorScheme scheme;
  ASSERT_TRUE(announceUntilDark(portal, true));
  portal.announce(appearance, "color-scheme", g_variant_new_variant(number(2)));
  ASSERT_TRUE(waitUntil([] { return !isDark(); }));
  portal.announce(appearance, "color-scheme", number(1));
  ASSERT_TRUE(waitUntil(isDark));
}

TEST_F(ColorSchemeTest, IgnoresOtherSettingsAndOtherTypes) {
  FakeSettingsPortal portal([] { return number(1); });
  const ColorScheme scheme;
  const SettingsListener listener;
  ASSERT_TRUE(waitUntil(isDark));
  portal.announce(appearance, "contrast", number(0));
  portal.announce("org.navora.other", "color-scheme", number(0));
  portal.announce(appearance, "color-scheme", g_variant_new_string("light"));
  portal.announce(appearance, "color-scheme", g_variant_new_int32(2));
  ASSERT_TRUE(listener.waitForMarker(portal));
  EXPECT_TRUE(isDark());
}

TEST_F(ColorSchemeTest, IgnoresAReplyOfAnotherTypeAndAnError) {
  for (const std::function<GVariant*()>& answer :
       {std::function<GVariant*()>([] { return g_variant_new_string("dark"); }),
        std::function<GVariant*()>([] { return g_variant_new_boolean(TRUE); }),
        std::function<GVariant*()>([]() -> GVariant* { return nullptr; })}) {
    setDark(false);
    FakeSettingsPortal portal(answer);
    const ColorScheme scheme;
    ASSERT_TRUE(waitUntil([&] { return portal.reads() > 0; }));
    EXPECT_FALSE(isDark());
    // Later signals still count.
    ASSERT_TRUE(announceUntilDark(portal, true));
  }
}

TEST_F(ColorSchemeTest, RestoresTheUsersSettingWithoutAPreference) {
  setDark(true);
  FakeSettingsPortal portal([] { return number(2); });
  const ColorScheme scheme;
  ASSERT_TRUE(waitUntil([] { return !isDark(); }));
  portal.announce(appearance, "color-scheme", number(0));
  EXPECT_TRUE(waitUntil([] { return isDark(); }));
}

// Setting the property makes GTK reload its theme, which would delay a window that is being shown.
TEST_F(ColorSchemeTest, SetsTheGtkPropertyOnlyWhenItChanges) {
  int changeCount = 0;
  const SignalConnection changes(
      gtk_settings_get_default(), "notify::gtk-application-prefer-dark-theme",
      G_CALLBACK(+[](GtkSettings*, GParamSpec*, gpointer count) { ++*static_cast<int*>(count); }),
      &changeCount);
  {
    ColorScheme scheme;
    scheme.setAppearance(WindowAppearance::light);
    scheme.setAppearance(WindowAppearance::system);
    EXPECT_EQ(changeCount, 0);
    scheme.setAppearance(WindowAppearance::dark);
    EXPECT_EQ(changeCount, 1);
    scheme.setAppearance(WindowAppearance::dark);
    EXPECT_EQ(changeCount, 1);
    EXPECT_TRUE(isDark());
  }
  EXPECT_EQ(changeCount, 2);
}

TEST_F(ColorSchemeTest, FollowsAPortalThatStartsLater) {
  const ColorScheme scheme;
  runPendingEvents();
  EXPECT_FALSE(isDark());
  FakeSettingsPortal portal([] { return number(2); });
  EXPECT_TRUE(announceUntilDark(portal, true));
}

TEST_F(ColorSchemeTest, RestoresTheUsersSettingAndUnsubscribesWhenDestroyed) {
  FakeSettingsPortal portal([] { return number(2); });
  {
    const ColorScheme scheme;
    ASSERT_TRUE(announceUntilDark(portal, true));
  }
  EXPECT_FALSE(isDark());
  const SettingsListener listener;
  portal.announce(appearance, "color-scheme", number(1));
  ASSERT_TRUE(listener.waitForMarker(portal));
  EXPECT_FALSE(isDark());
}

TEST_F(ColorSchemeTest, MayBeDestroyedBeforeItIsOnTheBus) {
  FakeSettingsPortal portal([] { return number(1); });
  {
    const ColorScheme scheme;
  }
  const SettingsListener listener;
  ASSERT_TRUE(listener.waitForMarker(portal));
  EXPECT_FALSE(isDark());
  EXPECT_EQ(portal.reads(), 0);
}

}  // namespace
}  // namespace navora
