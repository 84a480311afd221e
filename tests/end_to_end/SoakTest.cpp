#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "end_to_end/CaptureTest.h"
#include "end_to_end/driver/FakeNotificationDaemon.h"
#include "end_to_end/driver/FakeStatusNotifierWatcher.h"
#include "end_to_end/driver/ProcessTable.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

constexpr int warmUp = 50;
constexpr int sampleInterval = 10;

// The first rounds fill caches and pools; after them a round may leave nothing behind. The
// allocator returns its pages in steps, so the memory is compared by its trend.
constexpr double maximumKiBPerRound = 2;
constexpr std::int64_t maximumMoreDescriptors = 4;
constexpr std::int64_t maximumMoreThreads = 4;

int rounds() {
  const char* number = std::getenv("NAVORA_SOAK_ROUNDS");
  return number == nullptr ? 500 : std::atoi(number);
}

struct Sample {
  int round;
  ResourceUse use;
};

// Returns the median of the slopes between any two samples, in KiB per round (the Theil-Sen
// estimator). A sample that was taken while a dialog was still being closed does not count.
double growthPerRound(const std::vector<Sample>& samples) {
  std::vector<double> slopes;
  for (auto later = samples.begin(); later != samples.end(); ++later) {
    for (auto earlier = samples.begin(); earlier != later; ++earlier) {
      const auto more = later->use.privateMemoryKiB - earlier->use.privateMemoryKiB;
      slopes.push_back(static_cast<double>(more) / (later->round - earlier->round));
    }
  }
  const auto median = slopes.begin() + static_cast<std::ptrdiff_t>(slopes.size() / 2);
  std::nth_element(slopes.begin(), median, slopes.end());
  return *median;
}

std::string memoryOf(const std::vector<Sample>& samples) {
  std::string text = "KiB after each round:";
  for (const Sample& sample : samples)
    text += " " + std::to_string(sample.round) + ": " + std::to_string(sample.use.privateMemoryKiB);
  return text;
}

// Repeats one thing that users do, 500 times, and expects the application's own process to hold no
// more than after the first 50 times. NAVORA_SOAK_ROUNDS sets another number.
class SoakTest : public CaptureTest {
 protected:
  void SetUp() override {
    daemon.emplace(desktop().sessionBusAddress());
    tray.emplace(desktop().sessionBusAddress());
    CaptureTest::SetUp();
  }
  void TearDown() override {
    CaptureTest::TearDown();
    tray.reset();
    daemon.reset();
  }

  void soak(const std::function<void(int)>& round) {
    std::vector<Sample> samples;
    for (int number = 1; number <= rounds(); ++number) {
      ASSERT_NO_THROW(round(number)) << "in round " << number;
      if (number >= warmUp && number % sampleInterval == 0)
        samples.push_back({number, *resourceUse(application().pid())});
    }
    ASSERT_GE(samples.size(), 2U) << "There must be more rounds than " << warmUp;
    const ResourceUse& first = samples.front().use;
    const ResourceUse& last = samples.back().use;
    const double growth = growthPerRound(samples);
    std::cout << "Rounds " << samples.front().round << " to " << samples.back().round
              << ": private memory " << first.privateMemoryKiB << " to " << last.privateMemoryKiB
              << " KiB, " << growth << " KiB per round; descriptors " << first.descriptors << " to "
              << last.descriptors << ", threads " << first.threads << " to " << last.threads
              << "\n";
    EXPECT_LE(growth, maximumKiBPerRound) << memoryOf(samples);
    EXPECT_LE(last.descriptors, first.descriptors + maximumMoreDescriptors);
    EXPECT_LE(last.threads, first.threads + maximumMoreThreads);
  }

  // Waits until the application has handled all earlier messages of the page.
  void synchronize() {
    page().evaluate(
        "await new Promise(resolve => {"
        "  addEventListener('tolvin:notificationschange', resolve, {once: true});"
        "  window.webkit.messageHandlers.navoraNotifications.postMessage('status');"
        "})");
  }
  // Shows a page without content of its own, in the active main window.
  void usePlainPage() {
    const std::string path = "/__test/pages/bridge.html";
    page().tryEvaluate("setTimeout(() => { location.href = '" + path + "' }); return true");
    page().waitUntilTrue(
        "location.pathname === '" + path + "' && document.readyState === 'complete'",
        "the plain page");
    const auto window = application().waitForMainWindow();
    desktop().display().activate(window.id);
    desktop().display().waitUntilActive(window.id);
  }
  // Waits until the panel is hidden and its user works in the other program again.
  void waitUntilPanelGone() {
    waitUntilPanelHidden();
    desktop().display().waitUntilActive(other().id());
  }
  WindowInfo waitForWindow(const std::function<bool(const WindowInfo&)>& isWanted,
                           std::string_view description) {
    return waitFor(
        [&]() -> std::optional<WindowInfo> {
          for (const WindowInfo& window : application().windows())
            if (window.active && isWanted(window)) return window;
          return std::nullopt;
        },
        description, defaultTimeout(), [&] { return desktop().display().describeWindows(); });
  }
  WindowInfo waitForPanel() {
    return waitForWindow(
        [](const WindowInfo& window) { return window.hasType("_NET_WM_WINDOW_TYPE_UTILITY"); },
        "the capture panel");
  }
  WindowInfo waitForDialog() {
    return waitForWindow(
        [](const WindowInfo& window) { return window.hasType("_NET_WM_WINDOW_TYPE_DIALOG"); },
        "a dialog");
  }

  std::optional<FakeNotificationDaemon> daemon;
  std::optional<FakeStatusNotifierWatcher> tray;
};

TEST_F(SoakTest, Reloads) {
  usePlainPage();
  soak([&](int) {
    page().evaluate("window.isOld = true");
    desktop().keyboard().chord("Control+r");
    page().waitUntilTrue("!window.isOld && document.readyState === 'complete'",
                         "the page is loaded again");
  });
}

TEST_F(SoakTest, LanguageChanges) {
  // The setting, which the page reports when its window gets the focus, must not interfere.
  serviceClient().addFault("GET", "/api/settings", {{"drop", "before"}});
  usePlainPage();
  const std::vector<std::string> languages{"de", "ru", "ja", "en"};
  soak([&](int round) {
    const std::string& language = languages[static_cast<std::size_t>(round) % languages.size()];
    page().evaluate(
        "window.webkit.messageHandlers.navoraLocale.postMessage("
        "{requestedLocale: '" +
        language + "', detectedLocale: null})");
    synchronize();
    const std::string title = language == "ru" ? "Навора" : "Navora";
    waitUntil([&] { return application().waitForMainWindow().title == title; },
              "the window's title is " + title);
  });
}

TEST_F(SoakTest, Notes) {
  soak([&](int round) {
    desktop().keyboard().chord(hotKey);
    waitForPanel();
    desktop().keyboard().type(std::to_string(round));
    desktop().keyboard().chord(sendKey);
    waitUntilPanelGone();
  });
  EXPECT_EQ(storedNotes().size(), static_cast<std::size_t>(rounds()));
}

TEST_F(SoakTest, Panels) {
  soak([&](int) {
    desktop().keyboard().chord(hotKey);
    waitForPanel();
    desktop().keyboard().chord("Escape");
    waitUntilPanelGone();
  });
}

TEST_F(SoakTest, Cards) {
  // The service lists the last hundred.
  for (int number = 0; number < 100; ++number)
    serviceClient().addNotification({{"kind", "message"}, {"text", "Earlier"}});
  usePlainPage();
  serviceClient().clearRequests();
  // Polls, unless a poll is in progress.
  const auto poll = [&] {
    page().evaluate("window.webkit.messageHandlers.navoraNotifications.postMessage('enable')");
  };
  // The second poll begins when the first one has marked the list as seen.
  waitUntil(
      [&] {
        poll();
        return serviceClient().requests("GET", "/api/notifications").size() >= 2;
      },
      "the application has polled twice");
  soak([&](int round) {
    serviceClient().clearRequests();
    serviceClient().addNotification(
        {{"kind", "message"}, {"roomId", "room"}, {"text", "Number " + std::to_string(round)}});
    const auto count = static_cast<std::size_t>(round);
    waitUntil(
        [&] {
          poll();
          return daemon->notifications().size() >= count;
        },
        "the card is shown");
    daemon->close(daemon->notifications().back().id);
  });
}

// Each check ends with a banner: the service has no release for this system.
TEST_F(SoakTest, Banners) {
  const auto item = tray->waitForItem();
  const std::string heading = "No updates for this system";
  soak([&](int) {
    tray->choose(item, "Check for Updates…");
    widget("heading", heading);
    widget("push button", "Close").press();
    waitUntil([&] { return !hasWidget("heading", heading); }, "the banner is hidden");
  });
}

TEST_F(SoakTest, Alerts) {
  usePlainPage();
  soak([&](int round) {
    // Later: an alert stops the page, which has to reply to this first.
    page().evaluate("setTimeout(() => { alert('Read this'); window.answers = " +
                    std::to_string(round) + "; }, 20)");
    waitForDialog();
    desktop().keyboard().chord("Return");
    page().waitUntilTrue("window.answers === " + std::to_string(round), "the alert is answered");
  });
}

TEST_F(SoakTest, Downloads) {
  usePlainPage();
  page().evaluate(
      "const link = document.createElement('a');"
      "link.href = '/file'; link.download = ''; link.id = 'soak'; link.textContent = 'download';"
      "link.style.cssText = 'position: fixed; left: 10px; top: 10px; z-index: 1000';"
      "document.body.append(link)");
  const auto target = desktop().home() / "saved.bin";
  soak([&](int round) {
    const std::string content = "content " + std::to_string(round);
    serviceClient().addFault(
        "GET", "/file",
        {{"status", 200},
         {"contentType", "application/octet-stream"},
         {"headers", Json::array({{"Content-Disposition", "attachment; filename=\"saved.bin\""}})},
         {"body", content}},
        1);
    page().click("#soak");
    waitForDialog();
    // The dialog has selected the suggested name up to its suffix.
    desktop().keyboard().type("~/saved\n");
    waitUntil([&] { return readFile(target) == content; }, "the file is saved");
    std::filesystem::remove(target);
  });
}

TEST_F(SoakTest, SecondLaunches) {
  soak([&](int) { EXPECT_EQ(application().run({}).status.code, 0); });
}

}  // namespace
}  // namespace navora::driver
