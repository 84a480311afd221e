#include <cstdlib>
#include <functional>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "end_to_end/driver/FakeLogind.h"
#include "hosts/linux/bus/LoginManager.h"
#include "linux/support/EnvironmentVariable.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"

namespace navora {
namespace {

class LoginManagerTest : public testing::Test {
 protected:
  // The observer connects to the bus asynchronously, so the signal is repeated.
  testing::AssertionResult wakeUntil(const std::function<bool()>& condition) {
    return waitUntil([&] {
      if (condition()) return true;
      loginManager_.announceWake();
      return false;
    });
  }

  driver::FakeLogind loginManager_{TestDesktop::systemBusAddress()};
};

TEST_F(LoginManagerTest, ReportsTheEndOfSleepOnly) {
  int wakes = 0;
  const auto token = observeResume([&] { ++wakes; });
  ASSERT_TRUE(wakeUntil([&] { return wakes > 0; }));

  // Signals of one sender keep their order: when the marker is called, all earlier ones have
  // arrived.
  bool marked = false;
  const auto marker = observeResume([&] { marked = true; });
  ASSERT_TRUE(wakeUntil([&] { return marked; }));
  marked = false;
  loginManager_.announceWake();
  ASSERT_TRUE(waitUntil([&] { return marked; }));
  runPendingEvents();
  wakes = 0;
  loginManager_.announceSleep();
  loginManager_.announceSleep();
  loginManager_.announceWake();
  ASSERT_TRUE(waitUntil([&] { return wakes > 0; }));
  EXPECT_EQ(wakes, 1);
}

// In a process of its own, which has no shared connection to the bus yet.
TEST(LoginManagerDeathTest, WithoutASystemBusItReportsNothing) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const EnvironmentVariable nowhere("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
        auto token = observeResume([] { std::exit(2); });
        bool asked = false;
        g_bus_get(
            G_BUS_TYPE_SYSTEM, nullptr,
            [](GObject*, GAsyncResult* result, gpointer done) {
              if (g_bus_get_finish(result, nullptr) != nullptr) std::exit(3);
              *static_cast<bool*>(done) = true;
            },
            &asked);
        const bool answered = static_cast<bool>(waitUntil([&] { return asked; }));
        runPendingEvents();
        token.reset();
        std::exit(answered ? 0 : 4);
      },
      testing::ExitedWithCode(0), "");
}

TEST(LoginManagerDeathTest, TheProcessOutlivesTheSystemBus) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        GTestDBus* bus = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_up(bus);
        const EnvironmentVariable address("DBUS_SYSTEM_BUS_ADDRESS",
                                          g_test_dbus_get_bus_address(bus));
        bool woken = false;
        auto token = observeResume([&] { woken = true; });
        {
          driver::FakeLogind loginManager(g_test_dbus_get_bus_address(bus));
          if (!waitUntil([&] {
                if (!woken) loginManager.announceWake();
                return woken;
              }))
            std::exit(2);
        }
        GDBusConnection* connection = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
        g_test_dbus_stop(bus);
        if (!waitUntil([&] { return g_dbus_connection_is_closed(connection) != FALSE; }))
          std::exit(3);
        runPendingEvents();
        token.reset();
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace navora
