#include <string>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"

namespace navora::driver {
namespace {

// The driver cannot reach the page while the relay is unplugged, so the page gets its script
// before.
constexpr const char* reloadWhenUnreachable = R"(
  (async () => {
    try {
      for (;;) await fetch('/login', {cache: 'no-store'});
    } catch {
      location.reload();
    }
  })();
)";

constexpr const char* overlayTitle = "Navora is unavailable right now";

class LoadFailureTest : public TestPageTest {
 protected:
  // Unplugs the relay; the page reloads itself as soon as a request fails.
  void pullTheCable() {
    page().evaluate(reloadWhenUnreachable);
    service().stop();
  }
  void expectOverlay() { widget("label", overlayTitle); }
  void expectNoOverlay() {
    waitUntil([&] { return !hasWidget("label", overlayTitle); }, "the overlay is hidden");
  }
};

TEST_F(LoadFailureTest, CoversThePageWhenTheServiceIsUnreachableAndRetriesWithReturn) {
  signIn();
  pullTheCable();
  expectOverlay();
  EXPECT_TRUE(hasWidget("push button", "Try Again"));
  EXPECT_TRUE(hasWidget("push button", "Open in Browser"));
  desktop().display().screenshot().save(artifacts() / "overlay.png");

  // A retry that fails again shows the overlay again.
  serviceClient().addFault("GET", "/", {{"drop", "before"}});
  serviceClient().clearRequests();
  service().start();
  desktop().keyboard().chord("Return");
  serviceClient().waitForRequests("GET", "/");
  expectOverlay();
  serviceClient().clearFaults();
  desktop().keyboard().chord("Return");
  expectNoOverlay();
  page().waitUntilTrue("location.pathname === '/'", "the page is back");
}

TEST_F(LoadFailureTest, RetriesTheSubPageThatFailedPastTheLocalCache) {
  openTestPage("landing.html");
  pullTheCable();
  expectOverlay();
  service().start();
  serviceClient().clearRequests();
  widget("push button", "Try Again").press();
  expectNoOverlay();
  const auto requests = serviceClient().waitForRequests("GET", "/__test/pages/landing.html");
  EXPECT_EQ(requests.front().header("Cache-Control"), "no-cache");
}

TEST_F(LoadFailureTest, KeepsTheKeyboardWhenTheWindowIsHiddenAndShown) {
  signIn();
  pullTheCable();
  expectOverlay();
  desktop().keyboard().chord("Control+w");
  application().waitUntilMainWindowHidden();
  application().run({});
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  expectOverlay();
  const auto retry = widget("push button", "Try Again");
  waitUntil([&] { return retry.has(AccessibleState::focused); }, "the retry button is focused");
  desktop().display().screenshot().save(artifacts() / "overlay-shown-again.png");
  desktop().keyboard().chord("Tab");
  const auto browser = widget("push button", "Open in Browser");
  waitUntil([&] { return browser.has(AccessibleState::focused); }, "the next button is focused");
  desktop().keyboard().chord("Tab");
  waitUntil([&] { return retry.has(AccessibleState::focused); }, "the first button is focused");
  service().start();
  desktop().keyboard().chord("Return");
  expectNoOverlay();
  page().waitUntilTrue("location.pathname === '/'", "the page is back");
}

TEST_F(LoadFailureTest, OpensThePageInTheBrowserFromTheOverlay) {
  desktop().openedUrls().clear();
  openTestPage("landing.html");
  pullTheCable();
  expectOverlay();
  widget("push button", "Open in Browser").press();
  EXPECT_TRUE(desktop().openedUrls().waitForFirst().starts_with(
      service().url("/__test/pages/landing.html")));
}

TEST_F(LoadFailureTest, ShowsPagesFromTheCacheWithoutAnError) {
  const std::string body =
      "<!doctype html><script src='/__test/driver.js?name=main'></script><h1 id='cached'>Kept</h1>";
  serviceClient().addFault(
      "GET", "/cached",
      {{"status", 200},
       {"contentType", "text/html"},
       {"headers", Json::array({{"Cache-Control", "max-age=600"}, {"ETag", "\"1\""}})},
       {"body", body}});
  for (int visit = 0; visit < 3; ++visit) {
    openTestPage("landing.html");
    page().tryEvaluate("setTimeout(() => { location.href = '/cached'; }); return true");
    page().waitUntilTrue("document.querySelector('#cached') !== null", "the cached page");
    // The reply to this request follows that to the check of the page's length.
    page().evaluate("return document.title");
    EXPECT_FALSE(hasWidget("label", overlayTitle));
  }
}

TEST_F(LoadFailureTest, RecoversFromACrashedPageProcess) {
  openTestPage("landing.html");
  application().killWebProcesses();
  expectOverlay();
  desktop().keyboard().chord("Return");
  expectNoOverlay();
  page().waitUntilTrue("document.querySelector('#landing') !== null", "the page is back");
}

// The menu's "Reload", Ctrl+R.
class ReloadTest : public LoadFailureTest {
 protected:
  void reload() { desktop().keyboard().chord("Control+r"); }
  // The methods of all requests for a path, in order.
  std::string methods(const std::string& path) {
    std::string all;
    for (const auto& request : serviceClient().requests({}, path))
      all += request.method + " ";
    return all;
  }
};

TEST_F(ReloadTest, SendsARefusedSignInNotAgain) {
  page().waitUntilTrue("location.pathname === '/login'", "the login page is shown");
  page().type("[name=name]", "demo");
  page().type("[name=password]", "wrong");
  serviceClient().clearRequests();
  desktop().keyboard().chord("Return");
  page().waitUntilTrue("document.querySelector('[role=alert]').textContent !== ''",
                       "the sign-in is refused");
  reload();
  const auto reloaded = serviceClient().waitForRequests("GET", "/login");
  EXPECT_EQ(reloaded.front().header("Cache-Control"), "no-cache");
  EXPECT_EQ(reloaded.front().header("Pragma"), "no-cache");
  page().waitUntilTrue("document.querySelector('[role=alert]').textContent === ''",
                       "the page is loaded again");
  EXPECT_EQ(methods("/login"), "POST GET ");
}

TEST_F(ReloadTest, LoadsThePageThatIsBeingLoaded) {
  openTestPage("landing.html");
  serviceClient().addFault("GET", "/slow", {{"hang", true}});
  serviceClient().clearRequests();
  page().tryEvaluate("setTimeout(() => { location.href = '/slow'; }); return true");
  serviceClient().waitForRequests("GET", "/slow");
  reload();
  serviceClient().waitForRequests("GET", "/slow", 2);
  EXPECT_EQ(methods("/__test/pages/landing.html"), "");
  serviceClient().clearFaults();
}

class FirstLoadTest : public ReloadTest {
 protected:
  bool startsApplication() const override { return false; }
};

TEST_F(FirstLoadTest, IsRepeatedByReloadWhileItHangs) {
  serviceClient().addFault("GET", "/login", {{"hang", true}}, 1);
  application().start();
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  serviceClient().waitForRequests("GET", "/login");
  reload();
  serviceClient().waitForRequests("GET", "/login", 2);
  page().waitUntilTrue("location.pathname === '/login'", "the page is there");
}

struct LoadFault {
  const char* name;
  const char* action;
};

class FaultyServiceTest : public LoadFailureTest, public testing::WithParamInterface<LoadFault> {
 protected:
  bool startsApplication() const override { return false; }
};

TEST_P(FaultyServiceTest, ShowsTheOverlayAtLaunchAndRecovers) {
  serviceClient().addFault("GET", "/login", Json::parse(GetParam().action), 1);
  application().start();
  application().waitForMainWindow();
  expectOverlay();
  widget("push button", "Try Again").press();
  expectNoOverlay();
}

INSTANTIATE_TEST_SUITE_P(Login, FaultyServiceTest,
                         testing::Values(LoadFault{"DropsTheConnection", R"({"drop": "before"})"},
                                         LoadFault{"AnswersGarbage", R"({"garbage": true})"},
                                         LoadFault{"BreaksOffHalfway",
                                                   R"({"drop": "during", "bytes": 100})"}),
                         [](const auto& fault) { return fault.param.name; });

class ForeignRedirectTest : public LoadFailureTest {
 protected:
  bool startsApplication() const override { return false; }
};

TEST_F(ForeignRedirectTest, DropsARedirectOfTheFirstPageSilentlyAndSendsNothing) {
  desktop().openedUrls().clear();
  serviceClient().addFault("GET", "/login", {{"redirect", foreign().url("/login")}}, 1);
  application().start();
  application().waitForMainWindow();
  serviceClient().waitForRequests("GET", "/login");
  // A second launch shows the window: the application runs and has neither loaded nor opened a
  // foreign page.
  application().run({});
  EXPECT_TRUE(foreign().requests().empty());
  EXPECT_TRUE(desktop().openedUrls().all().empty());
  EXPECT_FALSE(hasWidget("label", overlayTitle));
}

}  // namespace
}  // namespace navora::driver
