#include <memory>

#include <gtest/gtest.h>

#include "end_to_end/driver/ApplicationProcess.h"
#include "end_to_end/driver/OtherWindow.h"
#include "end_to_end/driver/PageDriver.h"
#include "end_to_end/driver/ServiceClient.h"
#include "end_to_end/driver/ServiceProcess.h"
#include "end_to_end/driver/VirtualDesktop.h"
#include "tests/support/HttpServer.h"

namespace navora::driver {
namespace {

// The sample browser with a page of the development service that contains a foreign frame.
class PageDriverTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { desktop_ = std::make_unique<VirtualDesktop>(); }
  static void TearDownTestSuite() { desktop_.reset(); }

  void SetUp() override {
    foreign_.serve("/frame",
                   {"<!doctype html><script src='" + service_.url("/__test/driver.js?name=frame") +
                    "'></script><button id=inner>Inner</button>"
                    "<script>inner.onclick = () => window.hits = "
                    "(window.hits ?? 0) + 1</script>"});
    browser_ = std::make_unique<ApplicationProcess>(
        *desktop_,
        service_.url("/__test/pages/controls.html?title=Hello&frame=" + foreign_.url("/frame")),
        ApplicationProcess::Options{.executable = SAMPLE_BROWSER});
    browser_->start();
    desktop_->display().waitUntilActive(browser_->waitForMainWindow().id);
    page_ = std::make_unique<PageDriver>(
        *desktop_, service_.controlUrl(), [this] { return browser_->waitForMainWindow().content; },
        "controls");
    page_->waitUntilTrue("document.readyState === 'complete'");
  }

  void TearDown() override {
    if (HasFailure()) {
      desktop_->display().screenshot().save("page-driver-failure.png");
      GTEST_LOG_(INFO) << browser_->errorText();
    }
    browser_.reset();
  }

  void expectEvent(const std::string& event) {
    page_->waitUntilTrue("events.includes(" + Json(event).dump() + ")", "the event " + event);
  }

  static std::unique_ptr<VirtualDesktop> desktop_;
  ServiceProcess service_{{.testPages = DRIVER_TEST_PAGES}};
  HttpServer foreign_;
  std::unique_ptr<ApplicationProcess> browser_;
  std::unique_ptr<PageDriver> page_;
};

std::unique_ptr<VirtualDesktop> PageDriverTest::desktop_;

TEST_F(PageDriverTest, EvaluatesScriptsAndGivesTheirValues) {
  EXPECT_EQ(page_->text("h1"), "Hello");
  EXPECT_EQ(page_->evaluate("return {a: [1, 'ü', null]}"), (Json{{"a", {1, "ü", nullptr}}}));
  EXPECT_EQ(page_->evaluate("await null; return 2"), Json(2));
  EXPECT_TRUE(page_->exists("#button"));
  EXPECT_FALSE(page_->exists("#absent"));
  EXPECT_THROW(page_->evaluate("throw new Error('no')"), TestError);
  EXPECT_FALSE(page_->tryEvaluate("throw new Error('no')").has_value());
}

TEST_F(PageDriverTest, ClicksElementsWithTheRealPointer) {
  page_->click("#button");
  expectEvent("click button button 0");
  page_->click("#button", MouseButton::middle);
  expectEvent("auxclick button button 1");
  page_->click("#button", MouseButton::left, "Control+Shift");
  expectEvent("click button button 0 control shift");
}

TEST_F(PageDriverTest, ScrollsToElementsBeforeItClicksThem) {
  page_->click("#far");
  expectEvent("click far button 0");
}

TEST_F(PageDriverTest, FollowsAWindowThatChangesItsSize) {
  page_->click("#button");
  const WindowInfo window = browser_->waitForMainWindow();
  desktop_->display().resize(window.id, 1000, 700);
  waitUntil([&] { return browser_->waitForMainWindow().content.width == 1000; }, "the new size");
  page_->evaluate("events.length = 0");
  page_->click("#button");
  expectEvent("click button button 0");
}

TEST_F(PageDriverTest, WaitsForACoveredElement) {
  const Point cover = page_->rectangle("#cover").center();
  desktop_->mouse().doubleClick(cover);
  page_->click("#covered");
  expectEvent("click covered button 0");
}

TEST_F(PageDriverTest, TypesWithRealKeys) {
  page_->type("#field", "Привет, «мир» & co 😀");
  page_->waitUntilTrue("document.querySelector('#field').value === 'Привет, «мир» & co 😀'");
}

TEST_F(PageDriverTest, DrivesAForeignFrame) {
  PageDriver frame = page_->frame("#foreign", "frame");
  frame.click("#inner");
  frame.waitUntilTrue("window.hits === 1");
  EXPECT_EQ(frame.evaluate("return location.origin"), Json(foreign_.origin()));
}

TEST_F(PageDriverTest, FollowsAPageThatNavigates) {
  page_->evaluate("setTimeout(() => location.search = '?title=Second&frame=about:blank')");
  page_->waitUntilTrue("document.querySelector('h1').innerText === 'Second'");
}

// The element starts to move when the driver scrolls it into view, so that the test does not depend
// on how fast the driver is.
TEST_F(PageDriverTest, WaitsUntilAMovingElementIsAtRest) {
  page_->evaluate(
      "const mover = document.createElement('button'); mover.id = 'mover';"
      "mover.style.cssText = 'position: fixed; left: 100px; top: 200px; width: 90px';"
      "mover.scrollIntoView = () => { let step = 0; const move = () => {"
      "  mover.style.left = `${100 + 10 * ++step}px`;"
      "  if (step < 20) requestAnimationFrame(move); };"
      "  requestAnimationFrame(move); };"
      "document.body.append(mover)");
  const Rectangle found = page_->rectangle("#mover");
  EXPECT_EQ(Json(found.x), page_->evaluate("return window.__driverOffset.x + 300"));
}

TEST_F(PageDriverTest, TypesIntoAFocusedElementWithoutClickingIt) {
  page_->type("#field", "ab");
  page_->waitUntilTrue("document.querySelector('#field').value === 'ab'");
  page_->evaluate("document.querySelector('#field').setSelectionRange(0, 0)");
  page_->type("#field", "c");
  page_->waitUntilTrue("document.querySelector('#field').value === 'cab'");
}

// Focused by a script, because a click shortly before the driver's own would make that a double
// click, which selects the text.
TEST_F(PageDriverTest, ClicksAnElementThatKeptTheFocusOfAnInactiveWindow) {
  page_->evaluate(
      "const field = document.querySelector('#field'); field.value = 'a'; field.focus()");
  const OtherWindow other(desktop_->display());
  page_->waitUntilTrue("!document.hasFocus()");
  EXPECT_EQ(page_->evaluate("return document.activeElement.id"), Json("field"));
  page_->type("#field", "b");
  page_->waitUntilTrue("document.querySelector('#field').value === 'ab'");
}

TEST_F(PageDriverTest, WaitsUntilThePageIsPainted) {
  page_->evaluate("document.body.style.background = 'rgb(200, 40, 120)'");
  page_->waitUntilPainted();
  const Rectangle content = browser_->waitForMainWindow().content;
  const auto screen = desktop_->display().screenshot(content);
  EXPECT_GT(screen.pixelsLike({200, 40, 120}), 10'000U);
  EXPECT_EQ(screen.pixelsLike({1, 254, 3}, 0), 0U);
}

TEST_F(PageDriverTest, TheForeignServerSeesEveryRequestWithItsHeadersAndBody) {
  page_->evaluate("await fetch('" + foreign_.url("/post?q=1") +
                  "', {method: 'POST', mode: 'no-cors', body: 'a body'})");
  const RecordedRequest request = foreign_.waitForRequest("/post");
  EXPECT_EQ(request.method, "POST");
  EXPECT_EQ(request.target, "/post?q=1");
  EXPECT_EQ(request.body, "a body");
  EXPECT_EQ(request.header("origin"), service_.url().substr(0, service_.url().size() - 1));
  EXPECT_FALSE(request.header("Cookie").has_value());
  EXPECT_GE(foreign_.requests().size(), 2U);
  foreign_.clearRequests();
  EXPECT_TRUE(foreign_.requests().empty());
}

TEST_F(PageDriverTest, TheServiceReportsWhatItReceived) {
  ServiceClient client(service_.controlUrl());
  client.clearRequests();
  page_->evaluate("await fetch('/api/settings', {headers: {'X-Test': 'yes'}})");
  const auto requests = client.waitForRequests("GET", "/api/settings");
  EXPECT_EQ(requests.front().header("x-test"), "yes");
  EXPECT_TRUE(client.requests("POST", "/api/settings").empty());
}

TEST_F(PageDriverTest, TheServiceCarriesOutFaults) {
  ServiceClient client(service_.controlUrl());
  client.addFault("GET", "/api/settings", {{"status", 503}}, 1);
  const std::string status = "return (await fetch('/api/settings')).status";
  EXPECT_EQ(page_->evaluate(status), Json(503));
  EXPECT_EQ(page_->evaluate(status), Json(401));
  client.addFault("", "/api/settings", {{"drop", "before"}});
  EXPECT_FALSE(page_->tryEvaluate(status).has_value());
  client.clearFaults();
  EXPECT_EQ(page_->evaluate(status), Json(401));
}

TEST_F(PageDriverTest, AnUnpluggedServiceKeepsItsState) {
  ServiceClient client(service_.controlUrl());
  page_->evaluate("await fetch('/api/before')");
  service_.stop();
  EXPECT_THROW(ServiceClient(service_.url()).requests(), TestError);
  EXPECT_EQ(client.requests("GET", "/api/before").size(), 1U);
  service_.start();
  page_->waitUntilTrue("(await fetch('/api/after')).status > 0", "the service is reached again");
  EXPECT_EQ(client.requests("GET", "/api/before").size(), 1U);
}

TEST_F(PageDriverTest, APausedServiceAnswersOnlyWhenItResumes) {
  service_.pause();
  EXPECT_THROW(
      HttpClient(service_.url()).request("GET", "/login", "", {}, std::chrono::milliseconds(300)),
      TestError);
  service_.resume();
  EXPECT_EQ(HttpClient(service_.url()).get("/login").status, 200);
}

TEST_F(PageDriverTest, WebProcessesAreFoundAndKilled) {
  ASSERT_EQ(browser_->webProcesses().size(), 1U);
  EXPECT_GT(browser_->memoryKiB(), 50'000);
  EXPECT_GT(browser_->processorTicks(), 0);
  browser_->killWebProcesses();
  EXPECT_TRUE(browser_->webProcesses().empty());
  EXPECT_TRUE(browser_->running());
}

}  // namespace
}  // namespace navora::driver
