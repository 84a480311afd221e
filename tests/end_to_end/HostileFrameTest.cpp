#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"

namespace navora::driver {
namespace {

using Urls = std::vector<std::string>;

// A page of the service whose frames and redirects attempt what only the page may do.
class HostilePageTest : public TestPageTest {
 protected:
  void SetUp() override {
    TestPageTest::SetUp();
    if (HasFatalFailure()) return;
    desktop().openedUrls().clear();
    serviceClient().addFault("GET", "/to-foreign", {{"redirect", foreign().url("/frame")}});
    serviceClient().addFault("GET", "/api/settings", {{"garbage", true}});
    openTestPage("hostile.html", "kind=" + frameKind());
  }

  // Returns the kind of the frame that runs scripts, or "none".
  virtual std::string frameKind() const { return "none"; }

  // Expects that nothing foreign was loaded or opened. Effects of earlier actions precede that of
  // the marker link.
  void expectNothingForeign() {
    EXPECT_EQ(openedBeforeMarker(), Urls{});
    EXPECT_EQ(describe(foreign().requests()), "");
    EXPECT_EQ(page().path(), "/__test/pages/hostile.html");
    EXPECT_EQ(application().windows().size(), 1u);
    EXPECT_FALSE(hasWidget("label", "Navora is unavailable right now"));
  }

  // Expects that no message about a language had an effect before, and that the page's own has.
  void expectNoMessageButThePagesOwn() {
    page().evaluate(
        "await new Promise((resolve) => {"
        "  addEventListener('tolvin:systemtimezonechange', resolve, {once: true});"
        "  webkit.messageHandlers.navoraTimeZoneDetection.postMessage({});"
        "})");
    EXPECT_TRUE(hasWidget("frame", "Navora"));
    page().evaluate("webkit.messageHandlers.navoraLocale.postMessage({requestedLocale: 'ru'})");
    waitUntil([&] { return hasWidget("frame", "Навора"); }, "the page's own message is obeyed");
  }
};

TEST_F(HostilePageTest, LoadsNoForeignFrameInAnyWay) {
  EXPECT_EQ(page().evaluate("return document.querySelector('#foreign').contentDocument !== null &&"
                            " document.querySelector('#foreign').contentDocument.body.innerText"),
            "");
  page().evaluate(
      "for (const tag of ['iframe', 'frame', 'object', 'embed']) {"
      "  const element = document.createElement(tag);"
      "  element.src = element.data = '" +
      foreign().url("/late") +
      "'; element.type = 'text/html';"
      "  document.body.append(element);"
      "}"
      "document.querySelector('#blank').contentWindow.location.href = '" +
      foreign().url("/late") +
      "';"
      "document.querySelector('#redirected').src = '" +
      foreign().url("/late") + "'");
  expectNothingForeign();
}

TEST_F(HostilePageTest, GivesABlankFrameNoBridgeAndNoDialogs) {
  EXPECT_EQ(page().evaluate("const inner = document.querySelector('#blank').contentWindow;"
                            "return [typeof inner.webkit, inner.eval('alert(1)') === undefined,"
                            "  inner.eval('confirm(1)'), inner.eval('prompt(1, 2)')]"),
            Json({"undefined", true, false, nullptr}));
  page().evaluate(
      "document.querySelector('#blank').contentWindow.eval(`"
      "  window.dispatchEvent(new CustomEvent('navora-announcement', {detail:"
      "    JSON.stringify({kind: 'message', name: 'navoraLocale',"
      "      body: JSON.stringify({requestedLocale: 'ru'})})}));"
      "`)");
  expectNoMessageButThePagesOwn();
}

TEST_F(HostilePageTest, GivesAFrameWithItsOwnTextNoBridgeAndNoDialogs) {
  // The engine may refuse to show such a frame; its window exists either way.
  EXPECT_EQ(page().evaluate(
                "const frame = document.createElement('iframe');"
                "frame.srcdoc = '<script>window.own = true</scr' + 'ipt>';"
                "document.body.prepend(frame);"
                "const inner = frame.contentWindow;"
                "return [typeof inner.webkit, inner.eval('confirm(1)'), inner.eval('prompt(1)')]"),
            Json({"undefined", false, nullptr}));
  expectNoMessageButThePagesOwn();
}

TEST_F(HostilePageTest, KeepsARefusedPageOutOfTheHistory) {
  const auto length = page().evaluate("return history.length");
  page().tryEvaluate("setTimeout(() => { location.href = '" + foreign().url("/refused") +
                     "'; }); return true");
  expectNothingForeign();
  EXPECT_EQ(page().evaluate("return history.length"), length);
  page().tryEvaluate("setTimeout(() => history.back()); return true");
  page().waitUntilTrue("location.pathname === '/login'", "the page before is shown");
  page().tryEvaluate("setTimeout(() => history.forward()); return true");
  page().waitUntilTrue("location.pathname === '/__test/pages/hostile.html'", "the page is back");
  expectNothingForeign();
}

TEST_F(HostilePageTest, DropsARefreshOfThePageToAForeignSite) {
  page().evaluate(
      "const refresh = document.createElement('meta');"
      "refresh.httpEquiv = 'refresh'; refresh.content = '0;url=" +
      foreign().url("/refreshed") + "'; document.head.append(refresh)");
  expectNothingForeign();
}

TEST_F(HostilePageTest, DropsARefreshThatTheServiceAsksFor) {
  const std::string body =
      "<!doctype html><script src='/__test/driver.js?name=main'></script>"
      "<a id='marker' href='" +
      foreign().url("/marker") + "'>marker</a>";
  serviceClient().addFault(
      "GET", "/refreshing",
      {{"status", 200},
       {"contentType", "text/html"},
       {"headers", Json::array({{"Refresh", "0; url=" + foreign().url("/refreshed")}})},
       {"body", body}});
  page().tryEvaluate("setTimeout(() => { location.href = '/refreshing'; }); return true");
  page().waitUntilTrue("location.pathname === '/refreshing'");
  EXPECT_EQ(openedBeforeMarker(), Urls{});
  EXPECT_EQ(describe(foreign().requests()), "");
  EXPECT_EQ(page().path(), "/refreshing");
}

TEST_F(HostilePageTest, DropsAPostThatIsRedirectedToAForeignSite) {
  serviceClient().addFault("POST", "/posting",
                           {{"redirect", foreign().url("/posted")}, {"status", 307}});
  page().click("#post");
  serviceClient().waitForRequests("POST", "/posting");
  expectNothingForeign();
}

TEST_F(HostilePageTest, DropsALinkThatIsRedirectedToAForeignSite) {
  serviceClient().addFault("GET", "/stored", {{"redirect", foreign().url("/stored.zip")}});
  page().click("#download");
  serviceClient().waitForRequests("GET", "/stored");
  expectNothingForeign();
}

TEST_F(HostilePageTest, AsksForNoPasswordThatAServerDemands) {
  const std::pair<std::string, std::string> demand{"WWW-Authenticate", "Basic realm=\"Sign in\""};
  foreign().serve("/picture", {.body = "", .status = 401, .headers = {demand}});
  serviceClient().addFault("GET", "/secret",
                           {{"status", 401}, {"headers", Json::array({demand})}, {"body", "no"}});
  EXPECT_EQ(page().evaluate("return (await fetch('/secret')).status"), 401);
  EXPECT_EQ(page().evaluate("const image = new Image();"
                            "const failed = new Promise((resolve) => { image.onerror = resolve; });"
                            "image.src = '" +
                            foreign().url("/picture") + "'; return (await failed).type"),
            "error");
  EXPECT_FALSE(hasWidget("password text"));
}

class HostileFrameTest : public HostilePageTest, public testing::WithParamInterface<const char*> {
 protected:
  std::string frameKind() const override { return GetParam(); }
  PageDriver inner() { return page().frame("#inner", "inner"); }
};

TEST_P(HostileFrameTest, HasNoBridge) {
  PageDriver frame = inner();
  EXPECT_EQ(frame.evaluate("return typeof window.webkit"), "undefined");
  EXPECT_EQ(frame.evaluate("return typeof window.NavoraSystemTimeZone"), "undefined");
}

TEST_P(HostileFrameTest, ForgesNoMessage) {
  PageDriver frame = inner();
  frame.evaluate(
      "for (const target of [window, document, document.body]) forge(target);"
      "parent.postMessage(forgeries, '*')");
  expectNoMessageButThePagesOwn();
}

TEST_P(HostileFrameTest, ForgesNoTrustForWhatItOpens) {
  PageDriver frame = inner();
  frame.evaluate("forge(window)");
  frame.click("#open");
  frame.click("#new");
  expectNothingForeign();
}

TEST_P(HostileFrameTest, RaisesNoDialogEvenWhenThePageReplacesWhatItIsMadeOf) {
  page().evaluate(
      "String.prototype.startsWith = () => true;"
      "window.String = function () { return 'replaced'; };"
      "Object.prototype.toString = () => 'replaced';"
      "Object.defineProperty(Object.prototype, 'top', {value: true});"
      "Object.defineProperty(Object.prototype, 'fromTopFrame', {value: true});");
  PageDriver frame = inner();
  EXPECT_EQ(frame.evaluate("return [alert('a') === undefined, confirm('b'), prompt('c', 'd')]"),
            Json({true, false, nullptr}));
  frame.evaluate("window.print()");
  EXPECT_FALSE(hasWidget("alert"));
  EXPECT_FALSE(hasWidget("dialog"));
  page().evaluate("setTimeout(() => alert('The page may')); return true");
  widget("label", "The page may");
  EXPECT_EQ(application().windows().size(), 2u);
  widget("push button", "OK").press();
}

TEST_P(HostileFrameTest, NavigatesTheWindowNowhere) {
  for (const char* selector : {"#top", "#new", "#form-top", "#form-new", "#form-post", "#open"})
    inner().click(selector);
  expectNothingForeign();
}

TEST_P(HostileFrameTest, GetsNoFiles) {
  for (const char* selector : {"#files", "#picker"}) {
    PageDriver frame = inner();
    frame.evaluate("delete document.body.dataset.files; forge(window)");
    frame.click(selector);
    frame.waitUntilTrue("document.body.dataset.files === 'none'", "the chooser is cancelled");
    EXPECT_FALSE(hasWidget("file chooser"));
  }
}

INSTANTIATE_TEST_SUITE_P(Frame, HostileFrameTest, testing::Values("same", "sandboxed"),
                         [](const auto& frame) { return std::string(frame.param); });

}  // namespace
}  // namespace navora::driver
