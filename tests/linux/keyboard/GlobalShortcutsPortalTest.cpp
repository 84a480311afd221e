#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "end_to_end/driver/BusConnection.h"
#include "hosts/linux/keyboard/GlobalShortcutsPortal.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"

namespace navora {
namespace {

using testing::ElementsAre;

constexpr const char* shortcuts = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* portalPath = PortalRequest::portalPath;
constexpr const char* sessionPath = "/org/freedesktop/portal/desktop/session/test/one";
constexpr HotKey hotKey{.keyCode = KeyEvent::spaceKey,
                        .carbonModifiers = HotKey::carbonCommand | HotKey::carbonShift};

std::string textOption(GVariant* options, const char* name) {
  const char* text = nullptr;
  g_variant_lookup(options, name, "&s", &text);
  return stringFrom(text);
}

// A fake of the desktop's portal. Replies from the main loop of the test.
class FakeShortcutsPortal {
 public:
  FakeShortcutsPortal() : bus_(TestDesktop::sessionBusAddress()) {
    node_ = g_dbus_node_info_new_for_xml(
        "<node><interface name='org.freedesktop.portal.GlobalShortcuts'>"
        "<property name='version' type='u' access='read'/>"
        "<method name='CreateSession'><arg type='a{sv}' direction='in'/>"
        "<arg type='o' direction='out'/></method>"
        "<method name='BindShortcuts'><arg type='o' direction='in'/>"
        "<arg type='a(sa{sv})' direction='in'/><arg type='s' direction='in'/>"
        "<arg type='a{sv}' direction='in'/><arg type='o' direction='out'/></method></interface>"
        "<interface name='org.freedesktop.portal.Session'><method name='Close'/></interface>"
        "<interface name='org.freedesktop.portal.Request'><method "
        "name='Close'/></interface></node>",
        nullptr);
    add(portalPath, 0);
    add(sessionPath, 1);
    bus_.ownName(PortalRequest::portalName);
  }
  ~FakeShortcutsPortal() {
    for (const guint object : objects_)
      g_dbus_connection_unregister_object(bus_.get(), object);
    g_dbus_node_info_unref(node_);
  }
  FakeShortcutsPortal(const FakeShortcutsPortal&) = delete;
  FakeShortcutsPortal& operator=(const FakeShortcutsPortal&) = delete;

  void press(const char* session, const char* id) {
    bus_.emitSignal(portalPath, shortcuts, "Activated",
                    g_variant_new("(osta{sv})", session, id, guint64{1}, nullptr));
  }
  bool wasCalled(const std::string& call) const {
    return std::ranges::find(calls, call) != calls.end();
  }

  // Interface and method of each call, in order.
  std::vector<std::string> calls;
  std::string boundId;
  std::string boundTrigger;
  std::string boundDescription;
  // The response code of CreateSession; 0 is success.
  guint32 response = 0;
  bool failsCalls = false;
  // Never responds.
  bool keepsWaiting = false;

 private:
  void add(const std::string& path, int interface) {
    static const GDBusInterfaceVTable table{&FakeShortcutsPortal::onCall, &onProperty, nullptr, {}};
    objects_.push_back(g_dbus_connection_register_object(
        bus_.get(), path.c_str(), node_->interfaces[interface], &table, this, nullptr, nullptr));
  }

  static GVariant* onProperty(GDBusConnection*, const char*, const char*, const char*, const char*,
                              GError**, gpointer) {
    return g_variant_new_uint32(1);
  }

  static void onCall(GDBusConnection*, const char* sender, const char*, const char*,
                     const char* method, GVariant* parameters, GDBusMethodInvocation* invocation,
                     gpointer self) {
    auto& portal = *static_cast<FakeShortcutsPortal*>(self);
    const std::string interface = g_dbus_method_invocation_get_interface_name(invocation);
    portal.calls.push_back(interface.substr(interface.rfind('.') + 1) + "." + method);
    if (g_str_equal(method, "Close")) {
      return g_dbus_method_invocation_return_value(invocation, nullptr);
    }
    if (portal.failsCalls) {
      return g_dbus_method_invocation_return_dbus_error(
          invocation, "org.freedesktop.portal.Error.NotAllowed", "No");
    }
    if (g_str_equal(method, "BindShortcuts")) portal.rememberShortcut(parameters);
    const auto last = g_variant_n_children(parameters) - 1;
    const GVariantPtr options(g_variant_get_child_value(parameters, last));
    portal.respond(invocation, sender, textOption(options.get(), "handle_token"));
  }

  void rememberShortcut(GVariant* parameters) {
    const char* session = nullptr;
    GVariant* list = nullptr;
    g_variant_get(parameters, "(&o@a(sa{sv})&s@a{sv})", &session, &list, nullptr, nullptr);
    const GVariantPtr owner(list);
    EXPECT_STREQ(session, sessionPath);
    ASSERT_EQ(g_variant_n_children(list), 1U);
    const char* id = nullptr;
    GVariant* properties = nullptr;
    g_variant_get_child(list, 0, "(&s@a{sv})", &id, &properties);
    const GVariantPtr propertiesOwner(properties);
    boundId = id;
    boundTrigger = textOption(properties, "preferred_trigger");
    boundDescription = textOption(properties, "description");
  }

  // Emits Response before the method returns, as the portal may do.
  void respond(GDBusMethodInvocation* invocation, std::string sender, const std::string& token) {
    sender.erase(0, 1);
    std::ranges::replace(sender, '.', '_');
    const std::string path = std::string(portalPath) + "/request/" + sender + "/" + token;
    if (keepsWaiting) {
      add(path, 2);
    } else {
      GVariantBuilder results;
      g_variant_builder_init(&results, G_VARIANT_TYPE_VARDICT);
      g_variant_builder_add(&results, "{sv}", "session_handle", g_variant_new_string(sessionPath));
      bus_.emitSignal(path, "org.freedesktop.portal.Request", "Response",
                      g_variant_new("(ua{sv})", response, &results));
    }
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", path.c_str()));
  }

  GDBusNodeInfo* node_ = nullptr;
  std::vector<guint> objects_;
  driver::BusConnection bus_;
};

class GlobalShortcutsPortalTest : public testing::Test {
 protected:
  std::unique_ptr<GlobalShortcutsPortal> makeShortcut() {
    return std::make_unique<GlobalShortcutsPortal>(hotKey, "New note", [this] { ++presses_; });
  }
  testing::AssertionResult waitFor(const FakeShortcutsPortal& portal, const std::string& call) {
    return waitUntil([&] { return portal.wasCalled(call); });
  }

  int presses_ = 0;
};

TEST_F(GlobalShortcutsPortalTest, BindsTheShortcutAndReportsItsPresses) {
  FakeShortcutsPortal portal;
  const auto shortcut = makeShortcut();
  ASSERT_TRUE(waitFor(portal, "GlobalShortcuts.BindShortcuts"));
  EXPECT_THAT(portal.calls,
              ElementsAre("GlobalShortcuts.CreateSession", "GlobalShortcuts.BindShortcuts"));
  EXPECT_EQ(portal.boundTrigger, "CTRL+SHIFT+space");
  EXPECT_EQ(portal.boundDescription, "New note");
  portal.press(sessionPath, portal.boundId.c_str());
  ASSERT_TRUE(waitUntil([this] { return presses_ == 1; }));
  portal.press("/org/freedesktop/portal/desktop/session/test/other", portal.boundId.c_str());
  portal.press(sessionPath, "other");
  portal.press(sessionPath, portal.boundId.c_str());
  ASSERT_TRUE(waitUntil([this] { return presses_ >= 2; }));
  EXPECT_EQ(presses_, 2);
}

TEST_F(GlobalShortcutsPortalTest, ClosesItsSessionWhenDestroyed) {
  FakeShortcutsPortal portal;
  auto shortcut = makeShortcut();
  ASSERT_TRUE(waitFor(portal, "GlobalShortcuts.BindShortcuts"));
  shortcut.reset();
  EXPECT_TRUE(waitFor(portal, "Session.Close"));
  portal.press(sessionPath, portal.boundId.c_str());
  runPendingEvents();
  EXPECT_EQ(presses_, 0);
}

TEST_F(GlobalShortcutsPortalTest, ClosesAPendingRequestWhenDestroyed) {
  FakeShortcutsPortal portal;
  portal.keepsWaiting = true;
  auto shortcut = makeShortcut();
  ASSERT_TRUE(waitFor(portal, "GlobalShortcuts.CreateSession"));
  shortcut.reset();
  EXPECT_TRUE(waitFor(portal, "Request.Close"));
}

TEST_F(GlobalShortcutsPortalTest, LogsARefusal) {
  for (const bool failsCalls : {false, true}) {
    FakeShortcutsPortal portal;
    portal.response = 1;
    portal.failsCalls = failsCalls;
    testing::internal::CaptureStderr();
    const auto shortcut = makeShortcut();
    std::string log;
    EXPECT_TRUE(waitFor(portal, "GlobalShortcuts.CreateSession"));
    const auto logged = waitUntil([&] {
      std::cerr.flush();
      log += testing::internal::GetCapturedStderr();
      testing::internal::CaptureStderr();
      return log.find("no system-wide shortcut") != std::string::npos;
    });
    testing::internal::GetCapturedStderr();
    EXPECT_TRUE(logged);
    EXPECT_FALSE(portal.wasCalled("GlobalShortcuts.BindShortcuts"));
  }
}

TEST_F(GlobalShortcutsPortalTest, IsNotAvailableWithoutAPortal) {
  EXPECT_FALSE(GlobalShortcutsPortal::isAvailable());
}

TEST(ShortcutTriggerTest, HasTheSyntaxOfThePortalsTriggers) {
  EXPECT_EQ(
      shortcutTrigger({.keyCode = KeyEvent::spaceKey, .carbonModifiers = HotKey::carbonCommand}),
      "CTRL+space");
  EXPECT_EQ(shortcutTrigger({.keyCode = KeyEvent::returnKey,
                             .carbonModifiers = HotKey::carbonCommand | HotKey::carbonShift |
                                                HotKey::carbonOption}),
            "CTRL+ALT+SHIFT+Return");
  EXPECT_EQ(
      shortcutTrigger({.keyCode = KeyEvent::otherKey, .carbonModifiers = HotKey::carbonCommand}),
      "");
}

}  // namespace
}  // namespace navora
