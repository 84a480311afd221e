#include "pages/RestartGuardTest.h"

namespace navora::driver {
namespace {

// Requests, and the texts that they take with them.
class RestartGuardRequestTest : public RestartGuardTest {};

TEST_F(RestartGuardRequestTest, SameWordsInARequestDoNotSendAText) {
  const auto post = [this](const std::string& body) {
    page().evaluate("await fetch('/__test/pages/plain.html', {method: 'POST', body: " + body +
                    "})");
  };
  type("#line", "ok");
  post("JSON.stringify({status: 'ok'})");
  EXPECT_NE(ask(), Json()) << "a report";
  clear("#line");
  type("#area", "A draft");
  post("JSON.stringify({check: byId('area').value})");
  EXPECT_EQ(ask(), Json(reloadReason)) << "a spelling check";
  post("byId('area').value");
  EXPECT_EQ(ask(), Json(reloadReason)) << "without a name";
  clear("#area");
  EXPECT_EQ(ask(), Json()) << "emptied afterwards";
}

TEST_F(RestartGuardRequestTest, SameWordsInTwoEditorsAreTwoTexts) {
  page().evaluate(
      "for (const id of ['one', 'two']) { const form = document.createElement('form');"
      "  form.id = id; form.innerHTML = '<input name=reply><button>Send</button>';"
      "  form.onsubmit = (event) => { event.preventDefault();"
      "    window.sent = fetch('/__test/pages/plain.html', {method: 'POST', body: new "
      "FormData(form)}); "
      "  }; document.body.prepend(form); }");
  type("#one input", "Thank you");
  type("#two input", "Thank you");
  page().evaluate(
      "await fetch('/__test/pages/plain.html', {method: 'POST', body: "
      "JSON.stringify({reply: 'Thank you'})})");
  EXPECT_NE(ask(), Json()) << "which of them was sent is unknown";
  page().click("#one button");
  page().waitUntilTrue("!!window.sent");
  page().evaluate("await sent; document.querySelector('#one input').remove()");
  EXPECT_NE(ask(), Json()) << "the other one is not sent";
  page().evaluate("sent = null");
  page().click("#two button");
  page().waitUntilTrue("!!window.sent");
  page().evaluate("await sent");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardRequestTest, DocumentThatIsStoredInPiecesAsksForAReload) {
  page().click("#rich");
  page().waitUntilTrue("document.activeElement === byId('rich')");
  typeUntil("First line\nSecond line", "byId('rich').textContent === 'First lineSecond line'");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate(
      "await fetch('/__test/pages/plain.html', {method: 'PATCH', body: JSON.stringify({blocks: "
      "[{text: 'First line'}, {text: 'Second line'}]})})");
  EXPECT_EQ(ask(), Json(reloadReason));
  typeUntil(" more", "byId('rich').textContent.includes(' more')");
  EXPECT_EQ(ask(), Json(reloadReason));
}

TEST_F(RestartGuardRequestTest, RequestThatNeverEndsAsksForAReload) {
  client_.addFault("", "/__test/pages/hanging", {{"hang", true}});
  leave();
  page().evaluate(
      "window.stop = new AbortController();"
      "fetch('hanging', {method: 'POST', signal: stop.signal}).catch(() => {})");
  client_.waitForRequests("POST", "/__test/pages/hanging");
  EXPECT_EQ(ask(), Json(requestReason));
  page().evaluate("window.lateness = 21000");
  EXPECT_EQ(ask(), Json(stuckReason));
  page().evaluate("stop.abort(); await nextFrame()");
  EXPECT_EQ(ask(), Json());
}

// After the reload, such a page would ask for the next one.
TEST_F(RestartGuardRequestTest, ConnectionThatThePageHoldsOpenFromItsStartDoesNotBlock) {
  client_.addFault("", "/__test/pages/hanging", {{"hang", true}});
  page().evaluate("fetch('hanging', {method: 'POST'}).catch(() => {})");
  client_.waitForRequests("POST", "/__test/pages/hanging");
  EXPECT_EQ(ask(), Json(requestReason));
  page().evaluate("window.lateness = 21000");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardRequestTest, PendingRequestThatChangesSomethingBlocks) {
  for (const char* verb : {"POST", "put", "PATCH", "DELETE", "Odd"}) {
    const std::string name = Json(verb).dump();
    EXPECT_EQ(aroundRequest("return fetch(url, {method: " + name + "})"), blocks()) << verb;
    EXPECT_EQ(aroundRequest("return fetch(new Request(url, {method: " + name + "}))"), blocks());
    EXPECT_EQ(aroundRequest("const request = new XMLHttpRequest(); request.open(" + name +
                            ", url); const end = sent(request); request.send(); return end"),
              blocks())
        << verb;
  }
}

TEST_F(RestartGuardRequestTest, ReadsDoNotBlockEvenWhenTheyHang) {
  for (const char* verb : {"GET", "get", "HEAD", "OPTIONS"}) {
    const std::string name = Json(verb).dump();
    EXPECT_EQ(aroundRequest("return fetch(url, {method: " + name + "})"), doesNotBlock()) << verb;
  }
  client_.addFault("", "/__test/pages/hanging", {{"hang", true}});
  page().evaluate(
      "const request = new XMLHttpRequest(); request.open('GET', 'hanging?1'); request.send();"
      "fetch('hanging?2').catch(() => {}); fetch(new Request('hanging?3')).catch(() => {})");
  client_.waitForRequests("", "/__test/pages/hanging", 3);
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardRequestTest, RequestThatEndsWithoutAnAnswerIsOver) {
  client_.addFault("", "/__test/pages/hanging", {{"hang", true}});
  client_.addFault("", "/__test/pages/dropped", {{"drop", "before"}});
  EXPECT_EQ(aroundRequest("const stop = new AbortController(); setTimeout(() => stop.abort());"
                          "return fetch('hanging', {method: 'POST', signal: stop.signal})"),
            blocks());
  EXPECT_EQ(aroundRequest("return fetch('dropped', {method: 'POST'})"), blocks());
  EXPECT_EQ(aroundRequest("return fetch('http://[', {method: 'POST'})"), blocks());
  const std::string send =
      "const request = new XMLHttpRequest(); request.open('POST', 'hanging'); request.send();";
  EXPECT_EQ(aroundRequest(send + "const end = sent(request);"
                                 "setTimeout(() => request.abort()); return end"),
            blocks());
  EXPECT_EQ(aroundRequest(send + "return new Promise((resume) => setTimeout(() => {"
                                 "request.open('GET', url); resume(); }))"),
            blocks());
  EXPECT_EQ(aroundRequest("const request = new XMLHttpRequest(); try { request.send(); } catch {}"
                          "return Promise.resolve()"),
            doesNotBlock());
}

TEST_F(RestartGuardRequestTest, RequestsOfThePageWorkAsBefore) {
  EXPECT_EQ(page().evaluate(R"(
      const url = '/__test/pages/plain.html';
      const request = new XMLHttpRequest();
      request.open('POST', url, false);
      request.send('x');
      const problem = await fetch(url, {method: 'A B'}).catch((error) => error.name);
      return [request.status, (await fetch(url, {method: 'POST'})).status, problem, fetch.length,
              fetch.name, Object.keys(window).includes('fetch')])"),
            (Json{200, 200, "TypeError", 1, "fetch", true}));
  // The page still receives the event for an unhandled rejection.
  page().tryEvaluate("fetch('http://[', {method: 'POST'})");
  page().waitUntilTrue("failures.length === 1");
}

TEST_F(RestartGuardRequestTest, TextThatARequestTookWithItIsSentWhenItArrived) {
  const std::vector<std::string> bodies{
      "JSON.stringify({note: {area: byId('area').value + ' '}})",
      "new URLSearchParams({area: byId('area').value})",
      "new URLSearchParams({area: byId('area').value}).toString()",
      "(() => { const data = new FormData(); data.set('area', byId('area').value); return data; "
      "})()"};
  for (const std::string& body : bodies) {
    clear("#area");
    type("#area", "To be \"sent\" & kept");
    page().evaluate("await fetch('dropped', {method: 'POST', body: " + body +
                    "}).catch(() => {}); await fetch('/__test/pages/absent', {method: 'POST', "
                    "body: " +
                    body + "}); await fetch('/__test/pages/plain.html', {method: 'POST', " +
                    "body: JSON.stringify({area: 'To be'})})");
    EXPECT_NE(ask(), Json()) << body;
    page().evaluate("await fetch('/__test/pages/plain.html', {method: 'POST', body: " + body +
                    "})");
    EXPECT_EQ(ask(), Json()) << body;
  }
  type("#area", "more");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate(
      "const request = new XMLHttpRequest(); request.open('PUT', '/__test/pages/plain.html');"
      "request.send(JSON.stringify({area: byId('area').value}));"
      "await new Promise((resume) => request.addEventListener('load', resume))");
  EXPECT_EQ(ask(), Json());
}

}  // namespace
}  // namespace navora::driver
