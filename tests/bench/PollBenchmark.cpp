// The cost of a poll for notifications with the longest accepted list, on the main thread and in
// the background.
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include "fakes/FakePlatform.h"
#include "notifications/DesktopNotifications.h"
#include "notifications/NotificationSelection.h"
#include "support/Url.h"

namespace navora {
namespace {

constexpr std::size_t itemCount = 4000;
constexpr std::size_t largestReply = 1024 * 1024;

const Url& origin() {
  static const Url url = *Url::parse("https://navora.example/");
  return url;
}

// Returns a list of 4,000 items, close to the size limit, of which only the newest is unread.
std::string list(std::size_t newest) {
  Json items = Json::array();
  for (std::size_t number = newest + itemCount; number > newest; --number) {
    items.push_back(
        {{"id", "n-" + std::to_string(1'000'000 + number)},
         {"kind", "message"},
         {"read", number != newest + itemCount},
         {"resolved", false},
         {"createdAt", "2026-11-21T04:14:12Z"},
         {"roomId", "room-" + std::to_string(1000 + number % 9000)},
         {"data", {{"pushTitle", "Inés \"Harbour\""}}},
         {"lead", "Inés:"},
         {"text", "Shall we meet at the harbour at nine? Ça ira, and bring the charts."}});
  }
  const Json kinds{{{"key", "message"}, {"default", "phone"}}};
  return Json{{"notifications", std::move(items)}, {"kinds", kinds}}.dump();
}

// A signed-in user, and a service whose replies the benchmark controls.
struct Polls {
  FakePlatform platform;
  std::shared_ptr<FakeWebView> webView =
      std::make_shared<FakeWebView>(platform.log(), WebViewConfiguration{origin()});
  DesktopNotifications notifications{
      {.backgroundQueue = platform.backgroundQueue(),
       .dialogs = platform.dialogs(),
       .mainQueue = platform.mainQueue(),
       .notificationCenter = platform.notificationCenter(),
       .system = platform.system(),
       .userDefaults = platform.userDefaults(),
       .makeHttpSession =
           [this](const auto& configuration) { return platform.makeHttpSession(configuration); },
       .deniedText = [] { return std::string(); }},
      webView,
      origin()};

  // Runs a poll up to its last request, which is for the list.
  void ask() {
    platform.mainQueue().advance(std::chrono::seconds(60));
    webView->answerCookies();
    platform.network().answer(200, R"({"user": {"id": "u1"}})");
    platform.network().answer(
        200,
        R"({"settings": {"notifyPrefs": "{}", "quietHours": "22:00-07:00"}, "timeZone": "Europe/Berlin"})");
  }
  void answer(HttpSession::Result reply) { platform.network().finish(std::move(reply)); }
  void show() {
    platform.backgroundQueue().completeNext();
    FakeNotificationCenter& center = platform.notificationCenter();
    if (center.statusQuestions() > 0) center.answerStatus();
    while (center.addsUnderWay() > 0)
      center.finishAdd();
  }
};

// The main thread's part, before and after the background's. Each poll finds one new item.
void poll(benchmark::State& state) {
  Polls polls;
  polls.platform.system().time = dateFromSecondsSince1970(1'700'049'600);  // 13:00 in Berlin
  polls.notifications.start();
  std::size_t newest = 0;
  std::size_t bytes = 0;
  for (auto _ : state) {
    state.PauseTiming();
    polls.ask();
    HttpSession::Result reply = HttpResponse{200, origin(), list(newest++)};
    bytes = reply->body.size();
    state.ResumeTiming();
    polls.answer(std::move(reply));
    state.PauseTiming();
    polls.platform.backgroundQueue().workOnNext();
    state.ResumeTiming();
    polls.show();
  }
  if (polls.platform.notificationCenter().added.size() + 1 != newest)
    state.SkipWithError("A poll did not show the new item");
  if (bytes > largestReply) state.SkipWithError("The list is longer than the limit");
  state.counters["bytes"] = static_cast<double>(bytes);
}
// A fixed number of iterations: the untimed steps in between take far longer than the timed ones.
BENCHMARK(poll)->Unit(benchmark::kMillisecond)->Iterations(100);

// The background's part: from the body to the values that return to the main thread.
void pollInBackground(benchmark::State& state) {
  const NotificationSettings settings{{}, "22:00-07:00", "Europe/Berlin"};
  const Date now = dateFromSecondsSince1970(1'700'049'600);
  const std::string body = list(0);
  for (auto _ : state) {
    auto selection = NotificationSelection::read(body, settings, now, origin());
    if (!selection || selection->items.size() != itemCount)
      state.SkipWithError("The list could not be read");
    benchmark::DoNotOptimize(selection);
  }
}
BENCHMARK(pollInBackground)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace navora
