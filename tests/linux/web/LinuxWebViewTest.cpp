#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <unistd.h>

#include "end_to_end/driver/ProcessTable.h"
#include "hosts/linux/web/LinuxWebView.h"
#include "linux/web/WebViewTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using InjectionTime = UserScript::InjectionTime;

class LinuxWebViewTest : public WebViewTest {};

TEST_F(LinuxWebViewTest, LoadsAPage) {
  makeView();
  EXPECT_EQ(view_->url(), std::nullopt);
  server_.serveHtml("/notes", "<title>Notes</title>");
  ASSERT_TRUE(load("/notes?day=1"));
  EXPECT_EQ(view_->url(), testUrl(server_.url("/notes?day=1")));
  EXPECT_EQ(evaluate("document.title"), "Notes");
  EXPECT_EQ(navigation_.started, 1);
  EXPECT_EQ(navigation_.finished, 1);
  EXPECT_THAT(navigation_.failures, IsEmpty());
  ASSERT_EQ(navigation_.responses.size(), 1U);
  EXPECT_EQ(navigation_.responses[0].url, testUrl(server_.url("/notes?day=1")));
  EXPECT_TRUE(navigation_.responses[0].canShowMimeType);
}

// The process names are those of the kernel, which keeps 15 characters.
std::set<pid_t> webProcesses() {
  std::set<pid_t> processes;
  for (const auto& process : driver::descendantsOf(::getpid())) {
    if (process.name == "WebKitWebProces") processes.insert(process.pid);
  }
  return processes;
}

TEST_F(LinuxWebViewTest, StartsTheWebProcessBeforeTheFirstLoad) {
  WebViewTest::session();
  const auto before = webProcesses();
  makeView();
  EXPECT_TRUE(waitUntil([&] {
    return std::ranges::any_of(webProcesses(), [&](pid_t pid) { return !before.contains(pid); });
  }));
  EXPECT_EQ(navigation_.started, 0);
}

TEST_F(LinuxWebViewTest, BypassesTheCacheOnRequest) {
  server_.serveHtml("/notes", "");
  makeView();
  view_->load({.url = testUrl(server_.url("/notes")),
               .cachePolicy = CachePolicy::reloadIgnoringLocalCacheData});
  ASSERT_TRUE(waitUntil([this] { return navigation_.finished == 1; }));
  ASSERT_EQ(server_.requests("/notes").size(), 1U);
  EXPECT_EQ(server_.requests()[0].header("Cache-Control"), "no-cache");
}

class LinuxWebViewReloadTest : public WebViewTest {
 protected:
  // Loads as the application's "reload" does.
  void reload(const std::string& target) {
    view_->load({.url = testUrl(server_.url(target)),
                 .cachePolicy = CachePolicy::reloadIgnoringLocalCacheData});
  }
  testing::AssertionResult reloadAndWait(const std::string& target) {
    const int before = navigation_.finished;
    reload(target);
    return waitUntil([&] { return navigation_.finished > before; });
  }
  // Returns the methods of the requests for a path, in order.
  std::vector<std::string> methods(const std::string& path) {
    std::vector<std::string> all;
    for (const auto& request : server_.requests(path))
      all.push_back(request.method);
    return all;
  }
};

TEST_F(LinuxWebViewReloadTest, SendsNoFormAgain) {
  server_.serveHtml("/answer", "<title>Answer</title>", 401);
  ASSERT_TRUE(loadHtml("<form method=post action=/answer><input name=a value=1></form>"));
  run("document.forms[0].submit()");
  ASSERT_TRUE(waitUntil([this] { return navigation_.finished == 2; }));
  ASSERT_TRUE(reloadAndWait("/answer"));
  EXPECT_THAT(methods("/answer"), ElementsAre("POST", "GET"));
  const auto reloaded = server_.requests("/answer").back();
  EXPECT_EQ(reloaded.body, "");
  EXPECT_EQ(reloaded.header("Cache-Control"), "no-cache");
  EXPECT_EQ(reloaded.header("Pragma"), "no-cache");
  EXPECT_EQ(evaluate("document.title"), "Answer");
}

TEST_F(LinuxWebViewReloadTest, LoadsThePageThatIsBeingLoaded) {
  server_.serveHtml("/shown", "<title>Shown</title>");
  ASSERT_TRUE(load("/shown"));
  server_.leaveUnanswered("/slow");
  view_->load({.url = testUrl(server_.url("/slow"))});
  ASSERT_TRUE(waitUntil([this] { return server_.requests("/slow").size() == 1; }));
  ASSERT_EQ(view_->url(), testUrl(server_.url("/slow")));
  server_.serveHtml("/slow", "<title>Slow</title>");
  reload("/slow");
  ASSERT_TRUE(waitUntil([this] { return server_.requests("/slow").size() == 2; }));
  EXPECT_EQ(server_.requests("/shown").size(), 1U);
}

TEST_F(LinuxWebViewReloadTest, LoadsThePageThatThePageIsLoading) {
  server_.leaveUnanswered("/slow");
  ASSERT_TRUE(loadHtml("<title>Shown</title>"));
  run("location.href = '/slow'");
  ASSERT_TRUE(waitUntil([this] { return view_->url() == testUrl(server_.url("/slow")); }));
  // What the page shown loads meanwhile changes nothing.
  run("const part = document.createElement('iframe'); part.src = '/part'; "
      "document.body.append(part)");
  ASSERT_TRUE(waitUntil([this] { return server_.requests("/part").size() == 1; }));
  EXPECT_EQ(view_->url(), testUrl(server_.url("/slow")));
  reload("/slow");
  ASSERT_TRUE(waitUntil([this] { return server_.requests("/slow").size() == 2; }));
  EXPECT_EQ(server_.requests("/page").size(), 1U);
}

TEST_F(LinuxWebViewReloadTest, KnowsWhereARedirectLeads) {
  server_.leaveUnanswered("/slow");
  server_.serve("/moved", {.body = {}, .status = 302, .headers = {{"Location", "/slow"}}});
  ASSERT_TRUE(loadHtml("<title>Shown</title>"));
  run("location.href = '/moved'");
  EXPECT_TRUE(waitUntil([this] { return view_->url() == testUrl(server_.url("/slow")); }));
}

TEST_F(LinuxWebViewReloadTest, KnowsThePageThatIsStillShownAfterAFailure) {
  ASSERT_TRUE(loadHtml("<title>Shown</title>"));
  run("location.href = '" + HttpServer().url("/refused") + "'");
  ASSERT_TRUE(waitUntil([this] { return !navigation_.failures.empty(); }));
  EXPECT_EQ(view_->url(), testUrl(server_.url("/page")));
}

TEST_F(LinuxWebViewReloadTest, WorksWhileTheVeryFirstLoadHangs) {
  makeView();
  server_.leaveUnanswered("/first");
  view_->load({.url = testUrl(server_.url("/first"))});
  ASSERT_TRUE(waitUntil([this] { return server_.requests("/first").size() == 1; }));
  reload("/first");
  ASSERT_TRUE(waitUntil([this] { return server_.requests("/first").size() == 2; }));
  for (const auto& failure : navigation_.failures)
    EXPECT_EQ(failure.code, PlatformError::cancelledCode);
}

TEST_F(LinuxWebViewReloadTest, BypassesTheCacheAfterAFailedReloadOfThePage) {
  const auto respond = [this](const char* title) {
    server_.serve("/notes", {.body = std::string("<title>") + title + "</title>"});
  };
  respond("Before");
  ASSERT_TRUE(load("/notes"));
  // An empty reply.
  server_.serve("/notes", {.body = {}, .head = " "});
  run("location.reload()");
  ASSERT_TRUE(waitUntil([this] { return !navigation_.failures.empty(); }));
  respond("After");
  ASSERT_TRUE(reloadAndWait("/notes"));
  EXPECT_EQ(evaluate("document.title"), "After");
  const auto reloaded = server_.requests("/notes").back();
  EXPECT_EQ(reloaded.header("Cache-Control"), "no-cache");
  EXPECT_EQ(reloaded.header("Pragma"), "no-cache");
}

TEST_F(LinuxWebViewReloadTest, IgnoresACachedCopyOfThePageShown) {
  server_.serve("/kept",
                {.body = "<title>Kept</title>", .headers = {{"Cache-Control", "max-age=600"}}});
  ASSERT_TRUE(load("/kept"));
  ASSERT_TRUE(reloadAndWait("/kept"));
  EXPECT_EQ(server_.requests("/kept").size(), 2U);
}

TEST_F(LinuxWebViewReloadTest, LoadsAPageWithAFragmentInsteadOfScrolling) {
  server_.serveHtml("/notes", "<title>Notes</title><script>location.hash = 'today'</script>");
  ASSERT_TRUE(load("/notes"));
  EXPECT_EQ(view_->url(), testUrl(server_.url("/notes#today")));
  ASSERT_TRUE(reloadAndWait("/notes#today"));
  EXPECT_EQ(server_.requests("/notes").size(), 2U);
}

TEST_F(LinuxWebViewReloadTest, KeepsThePageToGoBackToWithoutSendingItsFormAgain) {
  server_.serveHtml("/answer", "<title>Answer</title>");
  ASSERT_TRUE(loadHtml("<form method=post action=/answer><input name=a value=1></form>"));
  run("document.forms[0].submit()");
  ASSERT_TRUE(waitUntil([this] { return navigation_.finished == 2; }));
  server_.serveHtml("/next", "<title>Next</title>");
  ASSERT_TRUE(load("/next"));
  ASSERT_TRUE(reloadAndWait("/next"));
  webkit_web_view_go_back(WEBKIT_WEB_VIEW(view_->widget()));
  ASSERT_TRUE(waitUntil(
      [this] { return view_->url() == testUrl(server_.url("/answer")) && !view_->isLoading(); }));
  EXPECT_EQ(evaluate("document.title"), "Answer");
  EXPECT_THAT(methods("/answer"), ElementsAre("POST"));
}

TEST_F(LinuxWebViewTest, ReturnsResultsOfEveryType) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  const std::vector<std::pair<const char*, Json>> results = {
      {"null", nullptr},
      {"true", true},
      {"42", 42},
      {"-0.5", -0.5},
      {"9007199254740991", 9007199254740991},
      {"''", ""},
      {"'Zürich \\u{1F600} \\0 \\\\ \"'", std::string("Zürich 😀 \0 \\ \"", 18)},
      {"[1, 'two', null, [], {}]", Json::array({1, "two", nullptr, Json::array(), Json::object()})},
      {"({a: {b: [true]}})", {{"a", {{"b", {true}}}}}},
      {"undefined", nullptr},
      {"", nullptr},
      {"NaN", nullptr},
      {"Infinity", nullptr},
      {"10n", nullptr},
      {"const loop = {}; loop.loop = loop; loop", nullptr},
  };
  for (const auto& [script, result] : results)
    EXPECT_EQ(evaluate(script), result) << script;
}

TEST_F(LinuxWebViewTest, ReportsAnExceptionOfAScript) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  EXPECT_THAT(evaluate("throw new Error('told so')").get<std::string>(), HasSubstr("told so"));
  EXPECT_THAT(evaluate("this is no script").get<std::string>(), testing::StartsWith("error: "));
  EXPECT_EQ(evaluate("1 + 1"), 2);
}

TEST_F(LinuxWebViewTest, AResultThatIsNotJsonIsAnError) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  for (const char* script : {"() => {}", "Symbol('s')", "Promise.resolve(1)"}) {
    EXPECT_THAT(evaluate(script), testing::ResultOf(
                                      [](const Json& result) {
                                        return result.is_string() ? result.get<std::string>()
                                                                  : result.dump();
                                      },
                                      testing::StartsWith("error: ")))
        << script;
  }
}

TEST_F(LinuxWebViewTest, AnEvaluationMayHaveNoCompletion) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  run("window.ran = true");
  run("throw 1");
  EXPECT_EQ(evaluate("window.ran"), true);
}

TEST_F(LinuxWebViewTest, CompletesEvaluationsInOrderAndAsynchronously) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  std::vector<int> answers;
  for (int number = 0; number < 5; ++number)
    view_->evaluateJavaScript("1", [&, number](const auto&) { answers.push_back(number); });
  EXPECT_THAT(answers, IsEmpty());
  ASSERT_TRUE(waitUntil([&] { return answers.size() == 5; }));
  EXPECT_THAT(answers, ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(LinuxWebViewTest, ADestroyedViewCallsNoCompletion) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  bool answered = false;
  view_->evaluateJavaScript("1", [&](const auto&) { answered = true; });
  view_.reset();
  ASSERT_TRUE(loadHtml("<body></body>"));
  EXPECT_EQ(evaluate("1"), 1);
  EXPECT_FALSE(answered);
}

TEST_F(LinuxWebViewTest, ACompletionMayDestroyTheView) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  view_->evaluateJavaScript("1", [this](const auto&) { view_.reset(); });
  EXPECT_TRUE(waitUntil([this] { return view_ == nullptr; }));
  runPendingEvents();
}

TEST_F(LinuxWebViewTest, EnablesBackAndForwardGestures) {
  makeView();
  WebKitSettings* settings = webkit_web_view_get_settings(WEBKIT_WEB_VIEW(view_->widget()));
  EXPECT_TRUE(webkit_settings_get_enable_back_forward_navigation_gestures(settings));
}

TEST_F(LinuxWebViewTest, RunsUserScriptsInTheMainFrameInOrder) {
  const auto push = [](const std::string& name) {
    return "(window.order ||= []).push('" + name + "');";
  };
  auto scripted = configuration();
  scripted.userScripts = {{push("end"), InjectionTime::documentEnd},
                          {push("start"), InjectionTime::documentStart},
                          {push("second start"), InjectionTime::documentStart},
                          {push("second end"), InjectionTime::documentEnd}};
  makeView(scripted);
  const std::string page = "<script>" + push("page") + "</script>";
  server_.serveHtml("/frame", page);
  ASSERT_TRUE(loadHtml(page + "<iframe src=/frame></iframe>"));
  EXPECT_EQ(evaluate("order"), (Json{"start", "second start", "page", "end", "second end"}));
  EXPECT_EQ(evaluate("frames[0].order"), Json::array({"page"}));
}

TEST_F(LinuxWebViewTest, AFailedLoadIsReportedOnce) {
  const Url refused = testUrl(HttpServer().url("/"));
  makeView();
  view_->load({.url = refused});
  ASSERT_TRUE(waitUntil([this] { return !navigation_.failures.empty(); }));
  // When a later load finishes, no further report of the first one is pending.
  ASSERT_TRUE(loadHtml("<title>Later</title>"));
  EXPECT_EQ(navigation_.failures.size(), 1U);
  EXPECT_EQ(navigation_.finished, 1);
  EXPECT_FALSE(navigation_.failures[0].localizedDescription.empty());
  EXPECT_NE(navigation_.failures[0].code, PlatformError::cancelledCode);
  EXPECT_NE(navigation_.failures[0].code, PlatformError::timedOutCode);
}

TEST_F(LinuxWebViewTest, AnErrorPageOfTheServerFinishes) {
  server_.serveHtml("/broken", "<title>Broken</title>", 500);
  ASSERT_TRUE(load("/broken"));
  EXPECT_EQ(evaluate("document.title"), "Broken");
  EXPECT_THAT(navigation_.failures, IsEmpty());
}

TEST_F(LinuxWebViewTest, ASilentServerTimesOut) {
  makeView();
  server_.leaveUnanswered("/silent");
  view_->load({.url = testUrl(server_.url("/silent")), .timeoutSeconds = 0.2});
  ASSERT_TRUE(waitUntil([this] { return !navigation_.failures.empty(); }));
  EXPECT_EQ(navigation_.failures[0].code, PlatformError::timedOutCode);
  EXPECT_FALSE(navigation_.failures[0].localizedDescription.empty());
  ASSERT_TRUE(loadHtml("<title>Later</title>"));
  EXPECT_EQ(navigation_.failures.size(), 1U);
  EXPECT_EQ(navigation_.finished, 1);
}

TEST_F(LinuxWebViewTest, AReplacedLoadIsCancelledAndTheNewOneFinishes) {
  makeView();
  server_.leaveUnanswered("/silent");
  view_->load({.url = testUrl(server_.url("/silent"))});
  ASSERT_TRUE(waitUntil([this] { return server_.requests("/silent").size() == 1; }));
  ASSERT_TRUE(loadHtml("<title>Second</title>"));
  EXPECT_EQ(navigation_.finished, 1);
  for (const auto& failure : navigation_.failures)
    EXPECT_EQ(failure.code, PlatformError::cancelledCode);
  EXPECT_EQ(evaluate("document.title"), "Second");
}

TEST_F(LinuxWebViewTest, ACrashOfTheWebProcessIsReportedAndALaterLoadWorks) {
  ASSERT_TRUE(loadHtml("<title>First</title>"));
  webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(view_->widget()));
  ASSERT_TRUE(waitUntil([this] { return navigation_.terminated == 1; }));
  ASSERT_TRUE(loadHtml("<title>Second</title>"));
  EXPECT_EQ(evaluate("document.title"), "Second");
  run("webkit.messageHandlers.notes.postMessage(1)");
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.bodies(), ElementsAre("1"));
  EXPECT_EQ(navigation_.terminated, 1);
}

TEST_F(LinuxWebViewTest, WithoutADelegateNothingIsLoaded) {
  server_.serveHtml("/refused", "");
  makeView();
  view_->setNavigationDelegate(nullptr);
  view_->load({.url = testUrl(server_.url("/refused"))});
  auto* native = WEBKIT_WEB_VIEW(view_->widget());
  ASSERT_TRUE(webkit_web_view_is_loading(native));
  ASSERT_TRUE(waitUntil([&] { return webkit_web_view_is_loading(native) == FALSE; }));
  EXPECT_EQ(server_.requests("/refused").size(), 0U);
  EXPECT_EQ(navigation_.started, 0);
  view_->setNavigationDelegate(&navigation_);
  EXPECT_TRUE(loadHtml("<body></body>"));
}

TEST_F(LinuxWebViewTest, ARefusedLoadIsCancelledAndCanBeRepeated) {
  server_.serveHtml("/refused", "<title>Taken up</title>");
  makeView();
  navigation_.decide = [](const NavigationAction&) { return NavigationPolicy::cancel; };
  view_->load({.url = testUrl(server_.url("/refused"))});
  ASSERT_TRUE(waitUntil([this] { return !navigation_.actions.empty(); }));
  navigation_.decide = nullptr;
  const auto request = navigation_.actions[0].request;
  ASSERT_NE(request, nullptr);
  view_->load(*request);
  ASSERT_TRUE(waitUntil([this] { return navigation_.finished == 1; }));
  EXPECT_EQ(server_.requests("/refused").size(), 1U);
  EXPECT_EQ(evaluate("document.title"), "Taken up");
  for (const auto& failure : navigation_.failures)
    EXPECT_EQ(failure.code, PlatformError::cancelledCode);
}

TEST_F(LinuxWebViewTest, ReturnsAllCookiesOfTheStore) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  WebKitCookieManager* store = webkit_web_context_get_cookie_manager(session().context());
  const auto add = [&](SoupCookie* cookie) {
    bool added = false;
    webkit_cookie_manager_add_cookie(
        store, cookie, nullptr,
        [](GObject*, GAsyncResult*, gpointer done) { *static_cast<bool*>(done) = true; }, &added);
    soup_cookie_free(cookie);
    return waitUntil([&] { return added; });
  };
  SoupCookie* lasting = soup_cookie_new("lasting", "a=b%20c", ".navora.example", "/app", -1);
  soup_cookie_set_secure(lasting, TRUE);
  soup_cookie_set_http_only(lasting, TRUE);
  GDateTime* expiry = g_date_time_new_from_unix_utc(4'000'000'000);
  soup_cookie_set_expires(lasting, expiry);
  g_date_time_unref(expiry);
  ASSERT_TRUE(add(lasting));
  ASSERT_TRUE(add(soup_cookie_new("passing", "1", "127.0.0.1", "/", -1)));

  std::optional<std::vector<HttpCookie>> cookies;
  view_->allCookies([&](std::vector<HttpCookie> all) { cookies = std::move(all); });
  EXPECT_EQ(cookies, std::nullopt) << "before the call returned";
  ASSERT_TRUE(waitUntil([&] { return cookies.has_value(); }));
  EXPECT_THAT(*cookies, IsSupersetOf({HttpCookie{"lasting", "a=b%20c", ".navora.example", "/app",
                                                 true, dateFromSecondsSince1970(4e9)},
                                      HttpCookie{"passing", "1", "127.0.0.1", "/", false, {}}}));
}

TEST_F(LinuxWebViewTest, ReturnsNoCookiesAfterItsDestruction) {
  ASSERT_TRUE(loadHtml("<body></body>"));
  bool told = false;
  view_->allCookies([&](const std::vector<HttpCookie>&) { told = true; });
  view_.reset();
  makeView();
  // A later request to the same store completes later.
  bool toldOther = false;
  view_->allCookies([&](const std::vector<HttpCookie>&) { toldOther = true; });
  ASSERT_TRUE(waitUntil([&] { return toldOther; }));
  EXPECT_FALSE(told);
}

}  // namespace
}  // namespace navora
