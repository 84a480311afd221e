#include "pages/PageTest.h"

#include <algorithm>

#include "tests/support/Files.h"

namespace navora::driver {

std::unique_ptr<VirtualDesktop> PageTest::desktop_;

void PageTest::TearDown() {
  if (HasFailure() && browser_) {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string("page-test-") + test->name() + ".png";
    // In the name of a test with a parameter.
    std::ranges::replace(name, '/', '-');
    desktop_->display().screenshot().save(name);
    GTEST_LOG_(INFO) << "See " << name << "\n" << browser_->errorText();
  }
  browser_.reset();
}

void PageTest::open(const std::string& path) {
  ApplicationProcess::Options options{.executable = SAMPLE_BROWSER};
  if (!firstScript().empty()) options.environment["SAMPLE_BROWSER_SCRIPT"] = firstScript();
  browser_ =
      std::make_unique<ApplicationProcess>(*desktop_, service_.url(path), std::move(options));
  browser_->start();
  desktop_->display().waitUntilActive(browser_->waitForMainWindow().id);
  page_ = std::make_unique<PageDriver>(*desktop_, service_.controlUrl(),
                                       [this] { return browser_->waitForMainWindow().content; });
  page_->waitUntilTrue("document.readyState === 'complete'");
}

void PageTest::openToday() {
  open("/login");
  page_->evaluate(
      "await fetch('/login', {method: 'POST', body: new URLSearchParams({name: 'demo', password: "
      "'demo'})})");
  page_->tryEvaluate("setTimeout(() => { location.href = '/'; }); return true");
  page_->waitUntilTrue(
      "location.pathname === '/' && document.readyState === 'complete' && "
      "document.querySelectorAll('.note').length > 0",
      "the today view shows its notes");
}

void PageTest::listen() {
  page_->evaluate(R"(
    window.posted = [];
    window.failures = [];
    window.nextFrame = window.requestAnimationFrame.bind(window);
    window.addEventListener('error', (event) => failures.push(event.message));
    window.addEventListener('unhandledrejection', (event) => failures.push(String(event.reason)));
    const postMessage = (message) => { posted.push(JSON.parse(JSON.stringify(message))); };
    window.webkit = {messageHandlers: {navoraCaptureAppearance: {postMessage}}};
  )");
}

void PageTest::runScript() {
  const std::string script = readFile(CAPTURE_APPEARANCE_SCRIPT);
  ASSERT_FALSE(script.empty());
  page_->evaluate("(0, eval)(" + Json("if (true) { " + script + " }").dump() + ")");
}

std::vector<Json> PageTest::posted(std::size_t count) {
  page_->waitUntilTrue("posted.length >= " + std::to_string(count),
                       std::to_string(count) + " appearances are posted");
  return page_->evaluate("return posted");
}

std::vector<Json> PageTest::settled() {
  const std::string marker = "marker " + std::to_string(++markers_);
  page_->evaluate("document.querySelector('#capture-input').setAttribute('data-placeholder', " +
                  Json(marker).dump() + ")");
  page_->waitUntilTrue("posted.at(-1)?.placeholder === " + Json(marker).dump(),
                       "the change of the placeholder is posted");
  std::vector<Json> all = page_->evaluate("return posted");
  all.pop_back();
  return all;
}

void PageTest::typeUntil(const std::string& text, const std::string& expression) {
  desktop().keyboard().type(text);
  page().waitUntilTrue(expression);
}

}  // namespace navora::driver
