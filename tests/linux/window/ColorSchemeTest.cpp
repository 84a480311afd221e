#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "hosts/linux/window/ColorScheme.h"
#include "linux/support/MainLoop.h"
#include "linux/support/SettingsPortal.h"
#include "linux/support/TestDesktop.h"

namespace navora {
namespace {

constexpr const char* portalPath = SettingsPortal::path;
constexpr const char* settingsInterface = SettingsPortal::interface;
constexpr const char* appearance = SettingsPortal::appearance;

GVariant* number(guint32 value) {
  return g_variant_new_uint32(value);
}

// Tells when everything that the portal announced has been handed out: signals of one sender keep
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

  testing::AssertionResult waitForMarker(SettingsPortal& portal) const {
    portal.announce("marker", "marker", number(0));
    const auto heard = waitUntil([this] { return heard_; });
    runPendingEvents();
    return heard;
  }

 private:
  static void onMarker(GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant*, gpointer self) {
    static_cast<SettingsListener*>(self)->heard_ = true;
  }

  bool heard_ = false;
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
  // The observer joins the bus in its own time.
  testing::AssertionResult announceUntilDark(SettingsPortal& portal, bool dark) {
    return waitUntil([&] {
      if (isDark() == dark) return true;
      portal.announce(appearance, "color-scheme", number(dark ? 1 : 2));
      return false;
    });
  }
};

TEST_F(ColorSchemeTest, ReadsTheDesktopsChoice) {
  SettingsPortal portal([] { return number(1); });
  const ColorScheme scheme;
  EXPECT_TRUE(waitUntil(isDark));
}

TEST_F(ColorSchemeTest, ReadsTheChoiceInTwoWrappings) {
  SettingsPortal portal([] { return g_variant_new_variant(number(1)); });
  const ColorScheme scheme;
  EXPECT_TRUE(waitUntil(isDark));
}

TEST_F(ColorSchemeTest, LightIsAChoiceToo) {
  setDark(true);
  SettingsPortal portal([] { return number(2); });
  const ColorScheme scheme;
  EXPECT_TRUE(waitUntil([] { return !isDark(); }));
}

TEST_F(ColorSchemeTest, FollowsChanges) {
  SettingsPortal portal([] { return number(2); });
  const ColorScheme scheme;
  ASSERT_TRUE(announceUntilDark(portal, true));
  portal.announce(appearance, "color-scheme", g_variant_new_variant(number(2)));
  ASSERT_TRUE(waitUntil([] { return !isDark(); }));
  portal.announce(appearance, "color-scheme", number(1));
  ASSERT_TRUE(waitUntil(isDark));
}

TEST_F(ColorSchemeTest, OtherSettingsAndOtherTypesChangeNothing) {
  SettingsPortal portal([] { return number(1); });
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

TEST_F(ColorSchemeTest, AnAnswerOfAnotherTypeOrAnErrorIsIgnored) {
  for (const std::function<GVariant*()>& answer :
       {std::function<GVariant*()>([] { return g_variant_new_string("dark"); }),
        std::function<GVariant*()>([] { return g_variant_new_boolean(TRUE); }),
        std::function<GVariant*()>([]() -> GVariant* { return nullptr; })}) {
    setDark(false);
    SettingsPortal portal(answer);
    const ColorScheme scheme;
    ASSERT_TRUE(waitUntil([&] { return portal.reads() > 0; }));
    EXPECT_FALSE(isDark());
    // Still listening.
    ASSERT_TRUE(announceUntilDark(portal, true));
  }
}

TEST_F(ColorSchemeTest, WithoutAPreferenceTheUsersOwnSettingHolds) {
  setDark(true);
  SettingsPortal portal([] { return number(2); });
  const ColorScheme scheme;
  ASSERT_TRUE(waitUntil([] { return !isDark(); }));
  portal.announce(appearance, "color-scheme", number(0));
  EXPECT_TRUE(waitUntil([] { return isDark(); }));
}

// The toolkit would read its whole theme again: a window that comes up would wait for that.
TEST_F(ColorSchemeTest, TellsTheToolkitNothingThatItKnows) {
  int told = 0;
  const SignalConnection changes(
      gtk_settings_get_default(), "notify::gtk-application-prefer-dark-theme",
      G_CALLBACK(+[](GtkSettings*, GParamSpec*, gpointer count) { ++*static_cast<int*>(count); }),
      &told);
  {
    ColorScheme scheme;
    scheme.setAppearance(WindowAppearance::light);
    scheme.setAppearance(WindowAppearance::system);
    EXPECT_EQ(told, 0);
    scheme.setAppearance(WindowAppearance::dark);
    EXPECT_EQ(told, 1);
    scheme.setAppearance(WindowAppearance::dark);
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(isDark());
  }
  EXPECT_EQ(told, 2);
}

TEST_F(ColorSchemeTest, WithoutAPortalTheThemeKeepsItsLookUntilOneComes) {
  const ColorScheme scheme;
  runPendingEvents();
  EXPECT_FALSE(isDark());
  SettingsPortal portal([] { return number(2); });
  EXPECT_TRUE(announceUntilDark(portal, true));
}

TEST_F(ColorSchemeTest, OneThatIsGoneLeavesTheUsersOwnSettingAndHearsNothing) {
  SettingsPortal portal([] { return number(2); });
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

TEST_F(ColorSchemeTest, MayGoBeforeTheBusAnswers) {
  SettingsPortal portal([] { return number(1); });
  {
    const ColorScheme gone;
  }
  const SettingsListener listener;
  ASSERT_TRUE(listener.waitForMarker(portal));
  EXPECT_FALSE(isDark());
  EXPECT_EQ(portal.reads(), 0);
}

}  // namespace
}  // namespace navora
