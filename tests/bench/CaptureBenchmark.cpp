// Measures the user's waiting times: from the hot key to a focused panel, from Ctrl+Return to the
// closed panel, and from the choice of a language to the new texts. Reports figures only.
#include <algorithm>
#include <chrono>
#include <functional>
#include <iomanip>
#include <iostream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <sched.h>
#include <xcb/xcb.h>

#include "bench/FocusWatch.h"
#include "bench/TypingCost.h"
#include "end_to_end/driver/ApplicationProcess.h"
#include "end_to_end/driver/OtherWindow.h"
#include "end_to_end/driver/PageDriver.h"
#include "end_to_end/driver/ServiceProcess.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::bench {
namespace {

using driver::WindowId;
using driver::WindowInfo;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int openings = 200;
constexpr int submissions = 30;
constexpr int coldStarts = 10;
constexpr int languageSwitches = 50;
constexpr int typedKeys = 40;

// 155 UTF-16 units with a line break.
const std::string typingSample(
    "The boat leaves at nine and anyone who wants to join us had better be there by then, "
    "with a coat, something to eat and the charts of the northern islands.");

void report(const std::string& label, std::vector<double> times) {
  std::ranges::sort(times);
  const auto at = [&](double share) {
    return times[std::min(times.size() - 1,
                          static_cast<std::size_t>(share * static_cast<double>(times.size())))];
  };
  std::cout << std::left << std::setw(46) << label << std::right << std::fixed
            << std::setprecision(1) << " median " << std::setw(7) << at(0.5) << " ms   99 % "
            << std::setw(7) << at(0.99) << " ms   n " << times.size() << std::endl;
}

void reportMean(const std::string& label, double time) {
  std::cout << std::left << std::setw(46) << label << std::right << std::fixed
            << std::setprecision(1) << " mean   " << std::setw(7) << time << " ms" << std::endl;
}

class CaptureBenchmark {
 public:
  CaptureBenchmark()
      : service_(driver::ServiceProcess::Options{.arguments = {"--test-driver"}}),
        application_(desktop_, service_.url()),
        page_(desktop_, service_.controlUrl(),
              [this] { return application_.waitForMainWindow().content; }) {}

  void run() {
    application_.start();
    signIn();
    const driver::OtherWindow other(desktop_.display());
    other_ = other.id();
    followPanel();
    measureOpening();
    measureBareWindow();
    measureTyping();
    measureSubmission();
    measureColdDialog();
    measureLanguageSwitch();
  }

 private:
  void signIn() {
    page_.waitUntilTrue("location.pathname === '/login' && document.readyState === 'complete'");
    page_.type("[name=name]", "demo");
    page_.type("[name=password]", "demo\n");
    page_.waitUntilTrue("location.pathname === '/' && document.readyState === 'complete'");
  }

  // Polls without a pause, which would be longer than the time being measured.
  double timeUntil(const std::function<bool()>& condition, Clock::time_point start) {
    while (!condition()) {
      if (Clock::now() - start > std::chrono::seconds(20))
        throw TestError("The measured event did not occur");
      sched_yield();
    }
    return Milliseconds(Clock::now() - start).count();
  }
  // Returns the time in milliseconds from a key press until the panel or the other window has the
  // focus.
  double press(const std::string& key) {
    focus_.forget();
    const auto start = Clock::now();
    desktop_.keyboard().press(key);
    const double time = Milliseconds(focus_.waitForFocus() - start).count();
    desktop_.keyboard().release(key);
    return time;
  }
  void waitForOther() {
    waitUntil([&] { return focus_.focus() == other_; }, "the other window has the focus");
  }
  std::optional<WindowId> ownFocus() {
    const WindowId window = focus_.focus();
    return window == other_ || window <= 1 ? std::nullopt : std::optional(window);
  }

  void followPanel() {
    desktop_.keyboard().chord("Control+Shift+space");
    focus_.follow(waitFor([&] { return ownFocus(); }, "the panel has the focus"));
    desktop_.keyboard().chord("Escape");
    waitForOther();
    focus_.follow(other_);
  }

  void open() {
    const driver::Keyboard::Hold held(desktop_.keyboard(), "Control+Shift");
    opening_.push_back(press("space"));
  }

  void measureOpening() {
    for (int count = 0; count < openings; ++count) {
      open();
      desktop_.keyboard().chord("Escape");
      waitForOther();
    }
    report("hot key to a focused panel", opening_);
  }

  // Measures typing in an empty draft and in drafts close to the maximum length, one of many
  // paragraphs and one of a single paragraph.
  void measureTyping() {
    reportTyping("a key in an empty draft", "");
    reportTyping("a key among 9,920 units in paragraphs", typingSample + "\n");
    reportTyping("a key among 9,920 units in one paragraph", typingSample + " ");
  }
  // Compares the panel with a text view of the toolkit that holds the same text.
  void reportTyping(const std::string& label, const std::string& piece) {
    open();
    if (!piece.empty()) fill(piece);
    reportMean(label, typingCost(desktop_.keyboard(), application_.pid(), typedKeys));
    desktop_.keyboard().chord("Control+a");
    desktop_.keyboard().chord("BackSpace");
    desktop_.keyboard().chord("Escape");
    waitForOther();
    const auto bare = desktop_.start({NAVORA_BARE_TEXT_VIEW});
    waitUntil([&] { return ownFocus().has_value(); }, "the bare text view has the focus");
    if (!piece.empty()) fill(piece);
    reportMean("  the same in a bare text view",
               typingCost(desktop_.keyboard(), bare->pid(), typedKeys));
    bare->terminate();
    waitForOther();
  }
  // Types the piece and doubles it six times.
  void fill(const std::string& piece) {
    desktop_.keyboard().type(piece);
    for (int count = 0; count < 6; ++count) {
      for (const char* keys : {"Control+a", "Control+c", "Control+End", "Control+v"}) {
        desktop_.keyboard().chord(keys);
        // Pasting is asynchronous, and its end is not visible from outside.
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
      }
    }
  }

  // Measures the window manager's and the X server's share: a window without any content.
  void measureBareWindow() {
    xcb_connection_t* connection = desktop_.display().connection().get();
    const WindowId bare = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, bare,
                      desktop_.display().connection().root(), 0, 0, 620, 190, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    FocusWatch focus(desktop_.display());
    desktop_.display().connection().synchronize();
    focus.follow(bare);
    std::vector<double> times;
    for (int count = 0; count < openings; ++count) {
      focus.forget();
      const auto start = Clock::now();
      xcb_map_window(connection, bare);
      xcb_flush(connection);
      times.push_back(Milliseconds(focus.waitForFocus() - start).count());
      xcb_unmap_window(connection, bare);
      xcb_flush(connection);
      waitForOther();
    }
    xcb_destroy_window(connection, bare);
    report("for comparison: a bare window, without a key", times);
  }

  void measureSubmission() {
    std::vector<double> times;
    for (int count = 0; count < submissions; ++count) {
      open();
      const std::string note = "Note " + std::to_string(count);
      desktop_.keyboard().type(note);
      const driver::Keyboard::Hold held(desktop_.keyboard(), "Control");
      times.push_back(press("Return"));
      waitForOther();
    }
    report("Ctrl+Return to the other window's focus", times);
    report("for comparison: both requests from the page", serviceTimes());
  }

  // Makes the same two requests from the page and returns their times in milliseconds.
  std::vector<double> serviceTimes() {
    std::vector<double> times;
    for (int count = 0; count < submissions; ++count) {
      times.push_back(page_.evaluate(
          "const start = performance.now();"
          "await (await fetch('/api/auth/me')).json();"
          "await (await fetch('/api/captures', {method: 'POST', body: JSON.stringify({raw: 'x'}),"
          "  headers: {'Content-Type': 'application/json', 'Idempotency-Key': 'benchmark-" +
          std::to_string(count) +
          "'}})).json();"
          "return performance.now() - start"));
    }
    return times;
  }

  void measureColdDialog() {
    std::vector<double> times;
    for (int count = 0; count < coldStarts; ++count) {
      const auto start = Clock::now();
      const auto dialog = desktop_.start({"/usr/bin/zenity", "--entry"});
      times.push_back(timeUntil([&] { return ownFocus().has_value(); }, start));
      dialog->terminate();
      waitForOther();
    }
    report("for comparison: start of zenity --entry", times);
  }

  // Measures from the page's message to the new window title, which is set after all other texts.
  void measureLanguageSwitch() {
    const WindowId window = application_.waitForMainWindow().id;
    std::vector<double> times;
    for (int count = 0; count < languageSwitches; ++count) {
      const bool toRussian = count % 2 == 0;
      page_.evaluate(
          std::string("setTimeout(() => { window.switched = performance.timeOrigin + "
                      "performance.now(); window.webkit.messageHandlers.navoraLocale.postMessage("
                      "{requestedLocale: '") +
          (toRussian ? "ru" : "en") + "', detectedLocale: null}) }, 300)");
      const std::string title = toRussian ? "Навора" : "Navora";
      timeUntil([&] { return desktop_.display().window(window)->title == title; }, Clock::now());
      const Milliseconds end = std::chrono::system_clock::now().time_since_epoch();
      const double begin = page_.evaluate("return window.switched");
      times.push_back(end.count() - begin);
    }
    report("language chosen in the page to the new texts", times);
  }

  driver::VirtualDesktop desktop_;
  driver::ServiceProcess service_;
  driver::ApplicationProcess application_;
  driver::PageDriver page_;
  FocusWatch focus_{desktop_.display()};
  WindowId other_ = 0;
  std::vector<double> opening_;
};

}  // namespace
}  // namespace navora::bench

int main() {
  try {
    navora::bench::CaptureBenchmark().run();
  } catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
    return 1;
  }
}
