// Random histories of typing, sending, failing, quitting and dying, against a model of what the
// user may expect: no text is lost, and no note is stored twice.
#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "capture/CaptureDraft.h"
#include "capture/DesktopQuickCapture.h"
#include "fakes/FakePlatform.h"
#include "fakes/LocaleScope.h"
#include "fakes/TestUrl.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr const char* serviceUrl = "https://navora.example/";
constexpr const char* fileName = "draft";
constexpr int histories = 1000;
constexpr int stepsPerHistory = 60;
constexpr std::chrono::milliseconds promise{500};

// Stores notes as the service does: once for each account and idempotency key.
class StoringService {
 public:
  struct Note {
    std::string account;
    std::string raw;
  };

  // The user who is signed in, and the one whose cookie the current submission carries.
  std::string account = "alice";
  std::string sender = "alice";
  const std::map<std::string, Note>& notes() const { return notes_; }

  void store(const HttpRequest& request) {
    notes_.try_emplace(sender + " " + keyOf(request),
                       Note{sender, Json::parse(request.body).at("raw")});
  }
  std::size_t countOf(const std::string& raw) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        notes_, [&raw](const auto& entry) { return entry.second.raw == raw; }));
  }

 private:
  static std::string keyOf(const HttpRequest& request) {
    const auto found = std::ranges::find(request.headers, "Idempotency-Key",
                                         [](const auto& header) { return header.first; });
    return found == request.headers.end() ? std::string() : found->second;
  }

  std::map<std::string, Note> notes_;
};

// One run of the application, which finds the files of the previous run.
class Process {
 public:
  explicit Process(const FakePrivateFile::Disk& disk, int uuids)
      : webView_(std::make_shared<FakeWebView>(platform_.log(),
                                               WebViewConfiguration{testUrl(serviceUrl)})) {
    platform_.system().nextUuid = uuids;
    platform_.disk(fileName) = disk;
    webView_->cookies = {{"tolvin_session", "abc", "navora.example", "/", true, std::nullopt}};
    capture_ = std::make_unique<DesktopQuickCapture>(
        DesktopQuickCapture::Dependencies{
            .backgroundQueue = platform_.backgroundQueue(),
            .mainQueue = platform_.mainQueue(),
            .system = platform_.system(),
            .userDefaults = platform_.userDefaults(),
            .workspace = platform_.workspace(),
            .draftFile = platform_.makePrivateFile(fileName),
            .makeHttpSession =
                [this](const auto& settings) { return platform_.makeHttpSession(settings); },
            .makePanel =
                [this](Size size, CapturePanelDelegate& delegate) {
                  return platform_.makeCapturePanel(size, delegate);
                }},
        webView_, testUrl(serviceUrl));
  }

  FakePlatform& platform() { return platform_; }
  DesktopQuickCapture& capture() { return *capture_; }
  FakeCaptureEditor& editor() { return platform_.capturePanel().editor(); }
  FakeHttpSession::Network& network() { return platform_.network(); }
  FakeWebView& webView() { return *webView_; }
  const FakePrivateFile::Disk& disk() { return platform_.disk(fileName); }
  int uuids() { return platform_.system().nextUuid; }

 private:
  FakePlatform platform_;
  std::shared_ptr<FakeWebView> webView_;
  std::unique_ptr<DesktopQuickCapture> capture_;
};

class History {
 public:
  explicit History(unsigned seed) : random_(seed) { start({}, 1); }

  // Returns the first broken promise, or an empty string.
  std::string play() {
    for (int step = 0; step < stepsPerHistory && problem_.empty(); ++step) {
      takeStep();
      check();
    }
    if (problem_.empty()) finish();
    return problem_.empty() ? problem_ : problem_ + "\n" + trace_;
  }

 private:
  int choose(int count) { return std::uniform_int_distribution(0, count - 1)(random_); }
  void note(const std::string& line) { trace_ += line + "\n"; }
  void fail(const std::string& problem) {
    if (problem_.empty()) problem_ = problem;
  }

  void start(const FakePrivateFile::Disk& disk, int uuids) {
    process_ = std::make_unique<Process>(disk, uuids);
  }

  void takeStep() {
    switch (choose(14)) {
      case 0:
      case 1:
        return type(process_->editor().text() + "word" + std::to_string(++words_) + " \n");
      case 2:
        return choose(4) == 0 ? type("") : type("text" + std::to_string(++words_));
      case 3:
        note("show");
        return process_->capture().show();
      case 4:
        note("hide");
        return process_->capture().hide(choose(2) == 0);
      case 5:
      case 6:
        note("submit");
        return process_->capture().submit();
      case 7:
      case 8:
      case 9:
        return answerSomething();
      case 10:
        return advance();
      case 11:
        note("background");
        return process_->platform().backgroundQueue().finishAll();
      case 12:
        service_.account = choose(3) == 0 ? "bob" : "alice";
        return note("account " + service_.account);
      default:
        return choose(2) == 0 ? kill() : quit();
    }
  }

  void type(const std::string& text) {
    if (!process_->editor().isEditable()) return;
    note("type " + text);
    process_->editor().type(text);
    // What a restart may bring back until the new text is on the disk.
    remembered_.push_back({process_->platform().mainQueue().elapsed(), text});
  }

  void advance() {
    const std::chrono::milliseconds time(50 * (1 + choose(50)));
    note("advance " + std::to_string(time.count()));
    process_->platform().mainQueue().advance(time);
    // The disk keeps up with the timer.
    process_->platform().backgroundQueue().finishAll();
  }

  // Lets whatever the submission waits for succeed or fail.
  void answerSomething() {
    auto& network = process_->network();
    if (network.underWay() > 0) return answerRequest(network);
    if (process_->webView().cookieQuestions() > 0) {
      note("cookies");
      return process_->webView().answerCookies();
    }
    if (process_->webView().evaluationsUnderWay() > 0) {
      note("model");
      process_->webView().finishEvaluation(Json{{"provider", "openai"}});
    }
  }

  void answerRequest(FakeHttpSession::Network& network) {
    const HttpRequest request = network.requests.at(network.requests.size() - network.underWay());
    const std::string path = request.url.path();
    if (path == "/api/captures") return answerPost(network, request);
    if (path == "/api/auth/me") {
      note("me");
      const int outcome = choose(8);
      if (outcome == 0) return network.fail(-1);
      if (outcome == 1) return network.answer(401, "{}");
      return answerAccount(network);
    }
    network.answer(204, "");
  }

  void answerAccount(FakeHttpSession::Network& network) {
    service_.sender = service_.account;
    network.answer(200, Json{{"user", {{"id", service_.account}}}}.dump());
  }

  void answerPost(FakeHttpSession::Network& network, const HttpRequest& request) {
    const int outcome = choose(8);
    note("post " + std::to_string(outcome));
    switch (outcome) {
      case 0:
        return network.fail(-1);
      case 1:
        service_.store(request);
        return network.fail(PlatformError::timedOutCode);
      case 2:
        service_.store(request);
        return network.answer(202, "{");
      case 3:
        service_.store(request);
        return network.answer(500, "{}");
      case 4:
        // Only a text that it has not stored already is refused.
        if (service_.countOf(Json::parse(request.body).at("raw")) == 0)
          return network.answer(422, R"({"error": {"message": "No"}})");
        [[fallthrough]];
      default:
        return confirm(network, request);
    }
  }

  void confirm(FakeHttpSession::Network& network, const HttpRequest& request) {
    service_.store(request);
    const std::string id = "00000000-0000-4000-8000-000000000001";
    confirmed_ = Json::parse(request.body).at("raw");
    network.answer(202,
                   Json{{"captureId", id}, {"jobId", id}, {"statusUrl", "/api/jobs/" + id}}.dump());
    remembered_ = {{process_->platform().mainQueue().elapsed(), ""}};
  }

  // Returns the texts that a file written within the promised time may hold: the last one that is
  // older than that, and every later one.
  std::set<std::string> promisedTexts() {
    const auto now = process_->platform().mainQueue().elapsed();
    std::set<std::string> texts;
    for (auto memory = remembered_.rbegin(); memory != remembered_.rend(); ++memory) {
      texts.insert(memory->second);
      if (now - memory->first >= promise) return texts;
    }
    return texts;
  }

  void kill() {
    note("kill");
    const auto allowed = promisedTexts();
    const bool wasUnconfirmed = isUnconfirmedOnDisk();
    restart();
    const std::string text = process_->editor().text();
    if (!allowed.contains(text) && trimmed(text) != confirmed_)
      fail("After a kill the text is \"" + text + "\"");
    if (process_->editor().isEditable() == wasUnconfirmed)
      fail("Frozen: " + std::string(wasUnconfirmed ? "no" : "yes"));
  }

  void quit() {
    note("quit");
    const std::string before = process_->editor().text();
    process_->capture().flushDraft();
    restart();
    if (process_->editor().text() != before)
      fail("After quitting the text is \"" + process_->editor().text() + "\"");
  }

  void restart() {
    const auto disk = process_->disk();
    const int uuids = process_->uuids();
    // The service may still process a request that is under way.
    if (process_->network().underWay() > 0 && choose(2) == 0) {
      const HttpRequest& request = process_->network().requests.back();
      if (request.method == "POST" && request.url.path() == "/api/captures")
        service_.store(request);
    }
    start(disk, uuids);
    remembered_ = {{std::chrono::milliseconds(-1'000'000), process_->editor().text()}};
  }

  bool isUnconfirmedOnDisk() {
    const auto& content = process_->disk().content;
    const auto draft = content ? CaptureDraft::parse(*content) : std::nullopt;
    return draft && draft->unconfirmed;
  }

  void check() {
    if (process_->disk().content && !CaptureDraft::parse(*process_->disk().content))
      fail("The file is damaged");
    for (const auto& [key, stored] : service_.notes()) {
      if (service_.countOf(stored.raw) > 1) fail("Stored twice: " + stored.raw);
    }
    const auto& requests = process_->network().requests;
    const bool posting = process_->network().underWay() > 0 && !requests.empty() &&
                         requests.back().url.path() == "/api/captures";
    if (posting && !isUnconfirmedOnDisk()) fail("Posted before the attempt was on the disk");
  }

  // Everything works again: the user signs in as the writer and sends until the note is confirmed.
  void finish() {
    const std::string text = trimmed(process_->editor().text());
    if (text.empty()) return;
    for (const char* account : {"alice", "bob"}) {
      service_.account = account;
      for (int round = 0; round < 40 && !process_->editor().text().empty(); ++round) {
        process_->capture().submit();
        process_->platform().backgroundQueue().finishAll();
        settleOne();
      }
    }
    if (!process_->editor().text().empty()) fail("The note cannot be sent: " + text);
    if (service_.countOf(text) != 1)
      fail("Stored " + std::to_string(service_.countOf(text)) + " times: " + text);
  }

  void settleOne() {
    auto& network = process_->network();
    if (process_->webView().cookieQuestions() > 0) return process_->webView().answerCookies();
    if (process_->webView().evaluationsUnderWay() > 0)
      return process_->webView().finishEvaluation(Json::object());
    if (network.underWay() == 0) return;
    const HttpRequest request = network.requests.at(network.requests.size() - network.underWay());
    if (request.url.path() == "/api/captures") return confirm(network, request);
    if (request.url.path() == "/api/auth/me") return answerAccount(network);
    network.answer(204, "");
  }

  std::mt19937 random_;
  StoringService service_;
  std::unique_ptr<Process> process_;
  // The texts of the editor and when each was typed, since the process started or a note was
  // stored.
  std::vector<std::pair<std::chrono::milliseconds, std::string>> remembered_{
      {std::chrono::milliseconds(-1'000'000), ""}};
  // The last note that the service confirmed: its file may still be there after a kill.
  std::string confirmed_;
  int words_ = 0;
  std::string problem_;
  std::string trace_;
};

TEST(CaptureHistory, LosesNoTextAndStoresNoNoteTwice) {
  const LocaleScope locale;
  for (unsigned seed = 1; seed <= histories; ++seed)
    ASSERT_EQ(History(seed).play(), "") << "seed " << seed;
}

}  // namespace
}  // namespace navora
