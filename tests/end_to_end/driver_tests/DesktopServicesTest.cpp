// FakeNotificationDaemon and FakeStatusNotifierWatcher.
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "end_to_end/driver/FakeNotificationDaemon.h"
#include "end_to_end/driver/FakeStatusNotifierWatcher.h"
#include "end_to_end/driver/VirtualDesktop.h"
#include "tests/support/Wait.h"

namespace navora::driver {
namespace {

class DesktopServicesTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    VirtualDesktop::Options options;
    options.accessibility = false;
    options.windowManager = false;
    desktop_ = std::make_unique<VirtualDesktop>(options);
  }
  static void TearDownTestSuite() { desktop_.reset(); }

  static std::string address() { return desktop_->sessionBusAddress(); }

  static std::unique_ptr<VirtualDesktop> desktop_;
};

std::unique_ptr<VirtualDesktop> DesktopServicesTest::desktop_;

// A client of the notification daemon that records its signals.
class NotifyingProgram {
 public:
  explicit NotifyingProgram(const std::string& address) : bus_(address) {
    subscription_ =
        g_dbus_connection_signal_subscribe(bus_.get(), service, service, nullptr, path, nullptr,
                                           G_DBUS_SIGNAL_FLAGS_NONE, onSignal, this, nullptr);
    // The subscription is active once the bus has replied to a later call.
    bus_.nameHasOwner(service);
  }
  ~NotifyingProgram() { g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_); }
  NotifyingProgram(const NotifyingProgram&) = delete;
  NotifyingProgram& operator=(const NotifyingProgram&) = delete;

  Variant notify(const std::string& title, std::uint32_t replaced = 0,
                 std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(1));
    const char* actions[] = {"default", "Open", nullptr};
    return bus_.tryCall({service, path, service, "Notify"},
                        g_variant_new("(susss^asa{sv}i)", "Sample", replaced, "icon", title.c_str(),
                                      "Body", actions, &hints, 5000),
                        timeout);
  }
  Variant capabilities() { return bus_.call({service, path, service, "GetCapabilities"}); }

  std::string waitForSignal() {
    while (signals_.empty())
      g_main_context_iteration(nullptr, TRUE);
    const std::string first = signals_.front();
    signals_.erase(signals_.begin());
    return first;
  }

 private:
  static constexpr const char* service = "org.freedesktop.Notifications";
  static constexpr const char* path = "/org/freedesktop/Notifications";

  static void onSignal(GDBusConnection*, const char*, const char*, const char*, const char* signal,
                       GVariant* parameters, gpointer self) {
    char* printed = g_variant_print(parameters, FALSE);
    static_cast<NotifyingProgram*>(self)->signals_.push_back(signal + std::string(printed));
    g_free(printed);
  }

  BusConnection bus_;
  guint subscription_ = 0;
  std::vector<std::string> signals_;
};

std::uint32_t idOf(const Variant& reply) {
  std::uint32_t id = 0;
  if (reply) g_variant_get(reply.get(), "(u)", &id);
  return id;
}

TEST_F(DesktopServicesTest, NotificationsAreRecordedWithAllTheirValues) {
  const FakeNotificationDaemon daemon(address());
  NotifyingProgram program(address());
  const std::uint32_t id = idOf(program.notify("First"));
  EXPECT_EQ(idOf(program.notify("Second", id)), id);
  EXPECT_NE(idOf(program.notify("Third")), id);

  const auto shown = daemon.notifications();
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_EQ(shown[0].id, id);
  EXPECT_EQ(shown[0].applicationName, "Sample");
  EXPECT_EQ(shown[0].replacesId, 0U);
  EXPECT_EQ(shown[0].icon, "icon");
  EXPECT_EQ(shown[0].summary, "First");
  EXPECT_EQ(shown[0].body, "Body");
  EXPECT_EQ(shown[0].actions, (std::vector<std::string>{"default", "Open"}));
  EXPECT_EQ(shown[0].hints.at("urgency"), "0x01");
  EXPECT_EQ(shown[0].expireTimeout, 5000);
  EXPECT_EQ(shown[1].replacesId, id);
}

TEST_F(DesktopServicesTest, NotificationsAreClickedAndClosed) {
  FakeNotificationDaemon daemon(address());
  NotifyingProgram program(address());
  const std::string id = std::to_string(idOf(program.notify("First")));
  daemon.click(1);
  EXPECT_EQ(program.waitForSignal(), "ActionInvoked(" + id + ", 'default')");
  daemon.click(1, "default", "token");
  EXPECT_EQ(program.waitForSignal(), "ActivationToken(" + id + ", 'token')");
  EXPECT_EQ(program.waitForSignal(), "ActionInvoked(" + id + ", 'default')");
  daemon.close(1);
  EXPECT_EQ(program.waitForSignal(), "NotificationClosed(" + id + ", 2)");
}

TEST_F(DesktopServicesTest, AServiceWhoseNameIsTakenSaysSo) {
  const FakeNotificationDaemon first(address());
  EXPECT_THROW(FakeNotificationDaemon second(address()), TestError);
  NotifyingProgram program(address());
  EXPECT_TRUE(program.notify("Shown"));
  EXPECT_EQ(first.notifications().size(), 1U);
}

TEST_F(DesktopServicesTest, TheNotificationServiceMayBeMissingSlowAndRestarted) {
  NotifyingProgram program(address());
  EXPECT_FALSE(program.notify("Missing"));
  auto daemon = std::make_unique<FakeNotificationDaemon>(address());
  daemon->hold();
  EXPECT_FALSE(program.notify("Slow", 0, std::chrono::milliseconds(50)));
  EXPECT_EQ(daemon->waitingCount(), 1U);
  daemon->release();
  EXPECT_TRUE(program.notify("Here"));
  EXPECT_EQ(daemon->notifications().size(), 2U);
  daemon.reset();
  EXPECT_FALSE(program.notify("Missing"));
  daemon = std::make_unique<FakeNotificationDaemon>(address(), std::vector<std::string>{"body"});
  EXPECT_TRUE(program.notify("Back"));
  EXPECT_EQ(daemon->notifications().size(), 1U);
  const Variant capabilities = program.capabilities();
  char* printed = g_variant_print(capabilities.get(), FALSE);
  EXPECT_STREQ(printed, "(['body'],)");
  g_free(printed);
}

// A status notifier item that is served on the test's main loop.
class SampleStatusItem {
 public:
  explicit SampleStatusItem(const std::string& address) : bus_(address) {
    node_ = g_dbus_node_info_new_for_xml(R"(
      <node><interface name='org.kde.StatusNotifierItem'>
        <property name='Title' type='s' access='read'/>
        <property name='Menu' type='o' access='read'/>
        <property name='IconPixmap' type='a(iiay)' access='read'/>
        <method name='Activate'><arg type='i' direction='in'/><arg type='i' direction='in'/></method>
      </interface><interface name='com.canonical.dbusmenu'>
        <method name='GetLayout'><arg type='i' direction='in'/><arg type='i' direction='in'/>
          <arg type='as' direction='in'/><arg type='u' direction='out'/>
          <arg type='(ia{sv}av)' direction='out'/></method>
        <method name='Event'><arg type='i' direction='in'/><arg type='s' direction='in'/>
          <arg type='v' direction='in'/><arg type='u' direction='in'/></method>
      </interface></node>)",
                                         nullptr);
    static const GDBusInterfaceVTable table{onCall, onProperty, nullptr, {}};
    for (const int index : {0, 1}) {
      objects_.push_back(g_dbus_connection_register_object(
          bus_.get(), index == 0 ? "/Item" : "/Menu", node_->interfaces[index], &table, this,
          nullptr, nullptr));
    }
  }
  ~SampleStatusItem() {
    for (const guint object : objects_)
      g_dbus_connection_unregister_object(bus_.get(), object);
    g_dbus_node_info_unref(node_);
  }
  SampleStatusItem(const SampleStatusItem&) = delete;
  SampleStatusItem& operator=(const SampleStatusItem&) = delete;

  std::string name() const { return g_dbus_connection_get_unique_name(bus_.get()); }
  void announce(const std::string& service) {
    bus_.call({"org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
               "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem"},
              g_variant_new("(s)", service.c_str()));
  }
  Variant watcherProperty(const char* name) {
    return bus_.tryProperty("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                            "org.kde.StatusNotifierWatcher", name);
  }

  // The calls with their arguments.
  std::vector<std::string> calls;

 private:
  static GVariant* onProperty(GDBusConnection*, const char*, const char*, const char*,
                              const char* name, GError**, gpointer) {
    if (std::string(name) == "Title") return g_variant_new_string("Sample");
    if (std::string(name) == "Menu") return g_variant_new_object_path("/Menu");
    return g_variant_new_parsed("[(1, 1, [byte 0xff, 0x10, 0x20, 0x30])]");
  }

  static void onCall(GDBusConnection*, const char*, const char*, const char*, const char* method,
                     GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
    char* printed = g_variant_print(parameters, FALSE);
    static_cast<SampleStatusItem*>(self)->calls.push_back(method + std::string(printed));
    g_free(printed);
    g_dbus_method_invocation_return_value(invocation,
                                          std::string(method) == "GetLayout" ? layout() : nullptr);
  }

  static GVariant* layout() {
    return g_variant_new_parsed(
        "(uint32 1, (0, @a{sv} {}, [<(1, {'label': <'Open'>}, @av [])>,"
        "<(2, {'type': <'separator'>}, @av [])>,"
        "<(3, {'label': <'Quit'>, 'enabled': <false>}, @av [])>,"
        "<(4, {'label': <'More'>}, [<(5, {'label': <'Deep'>}, @av [])>])>,"
        "<(6, {'label': <'Hidden'>, 'visible': <false>}, @av [])>]))");
  }

  BusConnection bus_;
  GDBusNodeInfo* node_ = nullptr;
  std::vector<guint> objects_;
};

// Runs a function on another thread, so that the item can reply on this one.
template <typename Question>
auto fromOutside(const Question& question) {
  auto answer = std::async(std::launch::async, question);
  while (answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
    g_main_context_iteration(nullptr, FALSE);
  return answer.get();
}

TEST_F(DesktopServicesTest, StatusItemsRegisterByPathOrByName) {
  FakeStatusNotifierWatcher watcher(address());
  EXPECT_TRUE(watcher.items().empty());
  auto item = std::make_unique<SampleStatusItem>(address());
  item->announce("/Item");
  EXPECT_EQ(watcher.registrations(), std::vector<std::string>{"/Item"});
  EXPECT_EQ(watcher.waitForItem(), (FakeStatusNotifierWatcher::Item{item->name(), "/Item"}));
  item->announce(item->name());
  ASSERT_EQ(watcher.items().size(), 2U);
  EXPECT_EQ(watcher.items()[1].path, "/StatusNotifierItem");
  const Variant registered = item->watcherProperty("RegisteredStatusNotifierItems");
  ASSERT_TRUE(registered);
  EXPECT_EQ(g_variant_n_children(registered.get()), 2U);
  const Variant hosts = item->watcherProperty("IsStatusNotifierHostRegistered");
  ASSERT_TRUE(hosts);
  EXPECT_TRUE(g_variant_get_boolean(hosts.get()));

  item.reset();
  EXPECT_TRUE(becomesTrue([&] { return watcher.items().empty(); }));
  EXPECT_EQ(watcher.registrations().size(), 2U);
}

TEST_F(DesktopServicesTest, StatusItemsAreRead) {
  FakeStatusNotifierWatcher watcher(address());
  SampleStatusItem item(address());
  item.announce("/Item");
  const auto registered = watcher.waitForItem();
  EXPECT_EQ(fromOutside([&] { return watcher.textProperty(registered, "Title"); }), "Sample");
  EXPECT_EQ(fromOutside([&] { return watcher.menuPath(registered); }), "/Menu");
  const auto pixmaps = fromOutside([&] { return watcher.pixmaps(registered); });
  ASSERT_EQ(pixmaps.size(), 1U);
  EXPECT_EQ(pixmaps[0].width, 1);
  EXPECT_EQ(pixmaps[0].height, 1);
  EXPECT_EQ(pixmaps[0].bytes, (std::vector<std::uint8_t>{0xFF, 0x10, 0x20, 0x30}));
  EXPECT_THROW(fromOutside([&] { return watcher.textProperty(registered, "Status"); }), TestError);
  EXPECT_THROW(fromOutside([&] { return watcher.textProperty(registered, "Menu"); }), TestError);

  const auto menu = fromOutside([&] { return watcher.menu(registered); });
  ASSERT_EQ(menu.size(), 5U);
  EXPECT_EQ(menu[0].id, 1);
  EXPECT_EQ(menu[0].label, "Open");
  EXPECT_EQ(menu[0].type, "standard");
  EXPECT_TRUE(menu[0].enabled);
  EXPECT_EQ(menu[1].type, "separator");
  EXPECT_FALSE(menu[2].enabled);
  ASSERT_EQ(menu[3].children.size(), 1U);
  EXPECT_EQ(menu[3].children[0].label, "Deep");
  EXPECT_FALSE(menu[4].visible);
}

TEST_F(DesktopServicesTest, StatusItemsAreActivatedAndTheirMenusOperated) {
  FakeStatusNotifierWatcher watcher(address());
  SampleStatusItem item(address());
  item.announce("/Item");
  const auto registered = watcher.waitForItem();
  const auto use = [&](const auto& step) {
    fromOutside([&] {
      step();
      return true;
    });
  };
  use([&] { watcher.activate(registered, 10, 20); });
  EXPECT_EQ(item.calls.back(), "Activate(10, 20)");
  use([&] { watcher.choose(registered, 1); });
  EXPECT_EQ(item.calls.back(), "Event(1, 'clicked', <0>, 0)");
  use([&] { watcher.choose(registered, "Deep"); });
  EXPECT_EQ(item.calls.back(), "Event(5, 'clicked', <0>, 0)");
  for (const char* unavailable : {"Quit", "Hidden", "Missing"})
    EXPECT_THROW(use([&] { watcher.choose(registered, unavailable); }), TestError) << unavailable;
}

}  // namespace
}  // namespace navora::driver
