#include "pages/RestartGuardPage.h"

namespace navora::driver {
namespace {

// The conditions under which the guard reports unsaved input.
class RestartGuardTest : public RestartGuardPage {
 protected:
  void SetUp() override { open(fields); }

  void clear(const std::string& selector) {
    page().evaluate("const element = document.querySelector(" + Json(selector).dump() +
                    "); if ('value' in element) element.value = ''; else element.textContent = ''");
  }

  // Returns the guard's answers during a request and after it; `request` returns a promise for the
  // end of the request.
  Json aroundRequest(const std::string& request) {
    return page().evaluate(
        "const ask = () => { const answer = NavoraUpdateGuard.prepare() ?? null;"
        "  NavoraUpdateGuard.resume(); return answer; };\n"
        "const url = '/__test/pages/plain.html';\n"
        "const sent = (request) => new Promise((resume) => request.addEventListener('loadend', "
        "resume));\n"
        "const end = (() => {" +
        request +
        "})();\nconst during = ask(); await end.catch(() => {});"
        "await new Promise((resume) => setTimeout(resume)); return [during, ask()]");
  }
  static Json blocks() { return {requestReason, nullptr}; }
  static Json doesNotBlock() { return {nullptr, nullptr}; }

  ServiceClient client_{service().controlUrl()};
};

TEST_F(RestartGuardTest, UntouchedPageIsReady) {
  EXPECT_EQ(ask(), Json());
  page().evaluate(
      "byId('area').value = byId('rich').textContent = 'Of the page'; byId('line').value = 'x';"
      "byId('menu').value = 'two'; byId('check').checked = true");
  page().evaluate(
      "for (const type of ['beforeinput', 'input', 'change'])"
      "  for (const id of ['area', 'line', 'rich', 'menu', 'check'])"
      "    byId(id).dispatchEvent(new Event(type, {bubbles: true}))");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, TypedTextBlocksInEveryKindOfEditorUntilItIsCleared) {
  for (const char* editor : {"#area", "#line", "#number", "#password", "#rich", "#text"}) {
    // Unlike any number in the driver's replies, which are requests of the page as well.
    type(editor, "471100");
    EXPECT_EQ(ask(), Json(textReason)) << editor;
    leave();
    EXPECT_EQ(ask(), Json(textReason)) << editor;
    clear(editor);
    EXPECT_EQ(ask(), Json()) << editor;
  }
  expectNoFailures();
}

TEST_F(RestartGuardTest, DeletedTextDoesNotCount) {
  type("#area", "ab");
  desktop().keyboard().chord("BackSpace");
  desktop().keyboard().chord("BackSpace");
  page().waitUntilTrue("byId('area').value === ''");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, PastedTextBlocks) {
  type("#line", "copied");
  desktop().keyboard().chord("Control+a");
  desktop().keyboard().chord("Control+x");
  page().waitUntilTrue("byId('line').value === ''");
  EXPECT_EQ(ask(), Json());
  page().click("#rich");
  page().waitUntilTrue("document.activeElement === byId('rich')");
  desktop().keyboard().chord("Control+v");
  page().waitUntilTrue("byId('rich').textContent === 'copied'");
  EXPECT_EQ(ask(), Json(textReason));
}

TEST_F(RestartGuardTest, TextThatEqualsWhatWasThereDoesNotCount) {
  page().evaluate("byId('line').value = 'Of the page'");
  for (const char* editor : {"#filled", "#line"}) {
    page().evaluate("const editor = document.querySelector('" + std::string(editor) +
                    "'); editor.focus(); editor.setSelectionRange(99, 99)");
    typeUntil("x", content(editor) + ".endsWith('x')");
    EXPECT_EQ(ask(), Json(textReason)) << editor;
    desktop().keyboard().chord("BackSpace");
    page().waitUntilTrue(content(editor) + ".endsWith('page')");
    EXPECT_EQ(ask(), Json()) << editor;
  }
}

TEST_F(RestartGuardTest, BlanksAreNoText) {
  page().click("#area");
  page().waitUntilTrue("document.activeElement === byId('area')");
  typeUntil("  \n", "byId('area').value === '  \\n'");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, TextThatThePagePutsInPlaceOfTheUsersDoesNotCount) {
  for (const char* editor : {"#area", "#rich"}) {
    type(editor, "typed");
    leave();
    page().evaluate("const editor = document.querySelector('" + std::string(editor) +
                    "'); editor[editor.id === 'area' ? 'value' : 'textContent'] = 'Another one'");
    EXPECT_EQ(ask(), Json()) << editor;
  }
}

TEST_F(RestartGuardTest, TextThatThePageOnlyReshapesIsStillTheUsers) {
  type("#area", "typed text");
  leave();
  page().evaluate("byId('area').value = '- Typed-Text! (10)'");
  EXPECT_EQ(ask(), Json(textReason));
}

TEST_F(RestartGuardTest, HiddenEditorCountsAndDetachedOneDoesNot) {
  type("#area", "typed");
  page().evaluate("byId('area').style.display = 'none'");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate("window.kept = byId('area'); kept.remove()");
  EXPECT_EQ(ask(), Json());
  page().evaluate("document.body.append(kept)");
  EXPECT_EQ(ask(), Json(textReason));
}

TEST_F(RestartGuardTest, EditorInAShadowTreeCounts) {
  page().evaluate(
      "const shadow = byId('outer').attachShadow({mode: 'open'});"
      "const made = document.createElement('input'); shadow.append(made); made.focus()");
  typeUntil("in", "byId('outer').shadowRoot.firstChild.value === 'in'");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate("byId('outer').shadowRoot.firstChild.value = ''");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, EditorInAClosedShadowTreeCountsWhileItsHostIsConnected) {
  page().evaluate(
      "window.inner = document.createElement('input');"
      "byId('outer').attachShadow({mode: 'closed'}).append(inner); inner.focus()");
  typeUntil("in", "inner.value === 'in'");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate("byId('outer').remove()");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, PendingRequestThatChangesSomethingBlocks) {
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

TEST_F(RestartGuardTest, ReadsDoNotBlockEvenWhenTheyHang) {
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

TEST_F(RestartGuardTest, RequestThatEndsWithoutAnAnswerIsOver) {
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

TEST_F(RestartGuardTest, RequestsOfThePageWorkAsBefore) {
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

TEST_F(RestartGuardTest, TextThatARequestTookWithItIsSentWhenItArrived) {
  const std::vector<std::string> bodies{
      "JSON.stringify({note: {text: byId('area').value + ' '}})",
      "new URLSearchParams({text: byId('area').value})",
      "new URLSearchParams({text: byId('area').value}).toString()",
      "(() => { const data = new FormData(); data.set('text', byId('area').value); return data; "
      "})()",
      "byId('area').value"};
  for (const std::string& body : bodies) {
    clear("#area");
    type("#area", "To be \"sent\" & kept");
    page().evaluate("await fetch('dropped', {method: 'POST', body: " + body +
                    "}).catch(() => {}); await fetch('/__test/pages/absent', {method: 'POST', "
                    "body: " +
                    body + "}); await fetch('/__test/pages/plain.html', {method: 'POST', " +
                    "body: JSON.stringify({text: 'To be'})})");
    EXPECT_EQ(ask(), Json(textReason)) << body;
    page().evaluate("await fetch('/__test/pages/plain.html', {method: 'POST', body: " + body +
                    "})");
    EXPECT_EQ(ask(), Json()) << body;
  }
  type("#area", "more");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate(
      "const request = new XMLHttpRequest(); request.open('PUT', '/__test/pages/plain.html');"
      "request.send(JSON.stringify([byId('area').value]));"
      "await new Promise((resume) => request.addEventListener('load', resume))");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, ChangedChoiceInAFormBlocksUntilItIsAsBefore) {
  for (const char* toggle : {"#check", "#radio-b"}) {
    page().click(toggle);
    page().waitUntilTrue("document.querySelector('" + std::string(toggle) + "').checked");
    EXPECT_EQ(ask(), Json(formReason)) << toggle;
    page().click(std::string(toggle) == "#check" ? "#check" : "#radio-a");
    page().waitUntilTrue("!document.querySelector('" + std::string(toggle) + "').checked");
    EXPECT_EQ(ask(), Json()) << toggle;
  }
  page().evaluate("byId('menu').focus()");
  typeUntil("t", "byId('menu').value === 'two'");
  EXPECT_EQ(ask(), Json(formReason));
  page().click("#reset");
  page().waitUntilTrue("byId('menu').value === 'one'");
  EXPECT_EQ(ask(), Json());
  page().click("#file");
  page().waitUntilTrue("byId('file').files.length === 1");
  EXPECT_EQ(ask(), Json(formReason));
  page().evaluate("byId('form').remove()");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, ChoiceOutsideOfAFormDoesNotCount) {
  page().evaluate("byId('loose').focus()");
  typeUntil("t", "byId('loose').value === 'two'");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, NumberInARequestMatchesOnlyANumberField) {
  const std::string post =
      "await fetch('/__test/pages/plain.html', {method: 'POST', body: JSON.stringify({of: "
      "471100})})";
  type("#area", "471100");
  page().evaluate(post);
  EXPECT_EQ(ask(), Json(textReason));
  clear("#area");
  type("#number", "471100");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate(post);
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, ChoiceThatARequestTookWithItIsSent) {
  page().click("#check");
  page().waitUntilTrue("byId('check').checked");
  page().evaluate("byId('menu').focus()");
  typeUntil("t", "byId('menu').value === 'two'");
  const std::string put = "await fetch('/__test/pages/plain.html', {method: 'PUT', body: ";
  page().evaluate(put + "JSON.stringify({menu: 'two', check: false})})");
  EXPECT_EQ(ask(), Json(formReason));
  page().evaluate(put + "JSON.stringify({check: true})})");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, FormThatThePageSubmitsItself) {
  page().evaluate(
      "byId('form').addEventListener('submit', (event) => { event.preventDefault();"
      "  window.answer = fetch(window.place, {method: 'POST', body: new FormData(event.target)}) "
      "})");
  type("#text", "typed");
  page().click("#check");
  page().waitUntilTrue("byId('check').checked");
  const auto submit = [this](const std::string& place) {
    page().evaluate("window.answer = null; window.place = " + Json(place).dump());
    page().click("#send");
    page().waitUntilTrue("!!window.answer");
    page().evaluate("await answer");
    // After the guard has checked whether the page prevented the default action.
    page().waitUntilTrue("NavoraUpdateGuard.prepare() !== " + Json(requestReason).dump());
    resume();
  };
  submit("/__test/pages/absent");
  EXPECT_EQ(ask(), Json(textReason));
  submit("/__test/pages/plain.html");
  EXPECT_EQ(ask(), Json());
  page().click("#check");
  page().waitUntilTrue("!byId('check').checked");
  EXPECT_EQ(ask(), Json());
  expectNoFailures();
}

TEST_F(RestartGuardTest, SubmitWithoutARequestSettlesChoicesButNoText) {
  page().evaluate(
      "byId('form').addEventListener('submit', (event) => { event.preventDefault();"
      "window.heard = true })");
  page().click("#check");
  type("#text", "typed");
  page().click("#send");
  page().waitUntilTrue("window.heard && NavoraUpdateGuard.prepare() !== " +
                       Json(requestReason).dump());
  EXPECT_EQ(ask(), Json(textReason));
  clear("#text");
  EXPECT_EQ(ask(), Json());
}

// The page asks, because the driver's scripts do not run while a page is being unloaded.
TEST_F(RestartGuardTest, SubmissionUnderWayBlocks) {
  client_.addFault("POST", "/__test/pages/landed.html", {{"hang", true}});
  page().evaluate(
      "byId('form').addEventListener('submit', () => {"
      "  const ask = () => navigator.sendBeacon('/__test/pages/answer', "
      "String(NavoraUpdateGuard.prepare()));"
      "  setTimeout(ask); setTimeout(() => setTimeout(ask)); })");
  page().click("#send");
  const auto answers = client_.waitForRequests("POST", "/__test/pages/answer", 2);
  for (const RecordedRequest& answer : answers)
    EXPECT_EQ(answer.body, requestReason);
}

TEST_F(RestartGuardTest, SubmissionByThePageBlocks) {
  client_.addFault("POST", "/__test/pages/landed.html", {{"hang", true}});
  EXPECT_EQ(page().evaluate("byId('form').submit(); return NavoraUpdateGuard.prepare()"),
            Json(requestReason));
}

TEST_F(RestartGuardTest, SubmissionIntoAFrameSendsTheText) {
  page().evaluate(
      "const frame = document.createElement('iframe'); frame.name = 'other';"
      "document.body.prepend(frame); byId('form').target = 'other'");
  type("#text", "typed");
  page().click("#send");
  client_.waitForRequests("POST", "/__test/pages/landed.html");
  page().waitUntilTrue("NavoraUpdateGuard.prepare() !== " + Json(requestReason).dump());
  EXPECT_EQ(ask(), Json());
}

}  // namespace
}  // namespace navora::driver
