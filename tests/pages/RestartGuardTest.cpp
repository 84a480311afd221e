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

TEST_F(RestartGuardTest, HiddenEditorCounts) {
  type("#area", "typed");
  page().evaluate("byId('area').style.display = 'none'");
  EXPECT_EQ(ask(), Json(textReason));
}

// The page may keep the text of an editor that it has removed, as a draft.
TEST_F(RestartGuardTest, TextOfARemovedEditorCountsUntilThePageShowsTheEditorEmpty) {
  type("#area", "typed");
  page().evaluate("window.kept = byId('area'); kept.remove()");
  EXPECT_EQ(ask(), Json(reloadReason));
  page().evaluate("document.body.append(kept)");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate(
      "kept.remove(); const made = document.createElement('textarea'); made.id = 'area';"
      "made.value = 'typed'; document.body.prepend(made)");
  EXPECT_EQ(ask(), Json(textReason));
  clear("#area");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, DraftCountsThatIsRestoredIntoAnotherEditorAndEditedThere) {
  type("#area", "typed");
  page().evaluate(
      "byId('area').remove(); const made = document.createElement('textarea'); made.id = 'area';"
      "document.body.prepend(made); made.value = 'typed'; made.focus()");
  typeUntil("x", "byId('area').value.includes('x')");
  desktop().keyboard().chord("BackSpace");
  page().waitUntilTrue("!byId('area').value.includes('x')");
  EXPECT_EQ(ask(), Json(textReason));
}

TEST_F(RestartGuardTest, EmptyEditorInPlaceOfARemovedOneHasNoDraft) {
  type("#area", "typed");
  const std::string renew =
      "byId('area').remove(); const made = document.createElement('textarea'); made.id = 'area';"
      "document.body.prepend(made)";
  page().evaluate("history.replaceState(null, '', '?elsewhere'); " + renew);
  EXPECT_EQ(ask(), Json(reloadReason)) << "another page, whose drafts are others";
  page().evaluate("history.replaceState(null, '', '?lang=en')");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, EditorThatIsEmptiedAndRemovedAtOnceCounts) {
  type("#rich", "typed");
  page().evaluate("byId('rich').textContent = ''; byId('rich').remove()");
  EXPECT_EQ(ask(), Json(reloadReason));
}

TEST_F(RestartGuardTest, RemovedEditorWithoutUnsentTextDoesNotCount) {
  type("#area", "typed");
  clear("#area");
  EXPECT_EQ(ask(), Json());
  page().evaluate("byId('area').remove(); byId('line').remove()");
  EXPECT_EQ(ask(), Json());
}

// A dialog that closes when its text has been stored.
TEST_F(RestartGuardTest, EditorThatIsRemovedWhenItsTextHasArrivedIsSent) {
  for (const bool isFirst : {false, true}) {
    SCOPED_TRACE(isFirst);
    open(fields);
    page().evaluate(
        "byId('elsewhere').onclick = async () => { const text = byId('line').value;"
        "  if (window.isFirst) byId('line').remove();"
        "  await fetch('/__test/pages/plain.html', {method: 'POST', body: JSON.stringify({text})});"
        "  await nextFrame(); byId('line')?.remove(); window.isClosed = true; };"
        "window.isFirst = " +
        Json(isFirst).dump());
    type("#line", "typed");
    page().click("#elsewhere");
    page().waitUntilTrue("window.isClosed");
    EXPECT_EQ(ask(), Json());
  }
}

// The request that arrived was one about the words, and not the one that sends them.
TEST_F(RestartGuardTest, EditorThatIsRemovedLaterThanItsTextWasCheckedIsNotSent) {
  page().evaluate(
      "byId('elsewhere').onclick = () => { window.checked = fetch('/__test/pages/plain.html', "
      "{method: 'POST', body: JSON.stringify({text: byId('line').value})}); };"
      "byId('outer').onclick = () => { byId('line').remove(); window.isClosed = true; }");
  type("#line", "typed");
  page().click("#elsewhere");
  page().waitUntilTrue("!!window.checked");
  page().evaluate("await checked");
  EXPECT_EQ(ask(), Json(reloadReason));
  page().click("#outer");
  page().waitUntilTrue("window.isClosed");
  EXPECT_EQ(ask(), Json(reloadReason));
}

TEST_F(RestartGuardTest, TextThatCouldNotBeSentAndIsNotShownAnyMoreCountsUntilItIsSentAgain) {
  page().evaluate(
      "window.send = (text) => fetch('/__test/pages/' + window.place, {method: 'POST', body: "
      "JSON.stringify({text})});"
      "byId('elsewhere').onclick = () => { window.text = byId('line').value;"
      "  window.sent = send(text); byId('line').value = ''; };"
      "window.place = 'absent'");
  type("#line", "typed");
  page().click("#elsewhere");
  page().waitUntilTrue("!!window.sent");
  page().evaluate("await sent");
  EXPECT_EQ(ask(), Json(reloadReason));
  page().evaluate("byId('line').value = text");
  EXPECT_EQ(ask(), Json(textReason));
  page().click("#elsewhere");
  page().waitUntilTrue("byId('line').value === ''");
  page().evaluate("await sent");
  EXPECT_EQ(ask(), Json(reloadReason));
  // As a button to try again does.
  page().evaluate(
      "const native = '/__test/pages/absent'; await fetch(native, {method: 'POST', body: "
      "JSON.stringify({text: 'another'})})");
  EXPECT_EQ(ask(), Json(reloadReason));
}

// The framework writes the value into the attribute at every key.
TEST_F(RestartGuardTest, FieldWhoseAttributeMirrorsItsValueCounts) {
  page().evaluate(
      "for (const id of ['area', 'line']) byId(id).addEventListener('input', "
      "(event) => { event.target.defaultValue = event.target.value; })");
  for (const char* editor : {"#area", "#line"}) {
    type(editor, "typed");
    EXPECT_EQ(page().evaluate("return document.querySelector('" + std::string(editor) +
                              "').defaultValue.length"),
              Json(5));
    EXPECT_EQ(ask(), Json(textReason)) << editor;
    leave();
    EXPECT_EQ(ask(), Json(textReason)) << editor;
    clear(editor);
    EXPECT_EQ(ask(), Json()) << editor;
  }
}

TEST_F(RestartGuardTest, ResetClearsOnlyWhatItReplaces) {
  type("#text", "typed");
  page().click("#reset");
  page().waitUntilTrue("byId('text').value === ''");
  EXPECT_EQ(ask(), Json());
  page().evaluate("byId('text').defaultValue = 'Another'");
  type("#text", "typed");
  page().click("#reset");
  page().waitUntilTrue("byId('text').value === 'Another'");
  page().waitUntilTrue("NavoraUpdateGuard.prepare() === undefined");
  resume();
  page().evaluate(
      "byId('text').oninput = () => { byId('text').defaultValue = byId('text').value }");
  type("#text", "mirrored");
  page().evaluate("window.wasReset = false; byId('form').onreset = () => { wasReset = true }");
  page().click("#reset");
  page().waitUntilTrue("wasReset && document.activeElement === byId('reset')");
  page().evaluate("await nextFrame(); await nextFrame()");
  EXPECT_EQ(ask(), Json(textReason));
}

// Such editors have no `input` events, and shape the text themselves.
TEST_F(RestartGuardTest, EditorThatCancelsItsEventsCountsAfterABlurAndAfterARequest) {
  page().evaluate(
      "const rich = byId('rich'); rich.addEventListener('beforeinput', (event) => {"
      "  event.preventDefault(); rich.textContent = window.next; });"
      "window.post = () => fetch('/__test/pages/plain.html', {method: 'POST', body: '{}'})");
  const auto write = [this](const std::string& text) {
    page().evaluate("window.next = " + Json(text).dump() + "; byId('rich').focus()");
    typeUntil("x", "byId('rich').textContent === " + Json(text).dump());
  };
  write("hello world");
  EXPECT_EQ(ask(), Json(textReason));
  leave();
  write("hello big moon");
  EXPECT_EQ(ask(), Json(textReason)) << "after a blur";
  page().evaluate("await post()");
  write("goodbye");
  EXPECT_EQ(ask(), Json(textReason)) << "after a request";
}

// A code editor that keeps its text elsewhere, and empties the textarea that has the focus.
TEST_F(RestartGuardTest, EditorThatTakesEveryKeyOutOfItsFieldCounts) {
  page().evaluate(
      "window.code = ''; byId('area').addEventListener('input', (event) => {"
      "  code += byId('area').value; byId('area').value = ''; })");
  page().click("#area");
  page().waitUntilTrue("document.activeElement === byId('area')");
  typeUntil("a", "code === 'a'");
  EXPECT_EQ(ask(), Json(reloadReason));
  typeUntil("bc", "code === 'abc'");
  leave();
  EXPECT_EQ(ask(), Json(reloadReason));
}

TEST_F(RestartGuardTest, FieldThatIsEmptiedByTheKeyThatSendsItDoesNotCount) {
  page().evaluate(
      "byId('line').addEventListener('keydown', (event) => { if (event.key === 'Enter') {"
      "  fetch('/__test/pages/plain.html', {method: 'POST', body: byId('line').value});"
      "  byId('line').value = ''; } })");
  type("#line", "typed");
  desktop().keyboard().chord("Return");
  page().waitUntilTrue("byId('line').value === ''");
  page().waitUntilTrue("NavoraUpdateGuard.prepare() === undefined");
}

TEST_F(RestartGuardTest, EditorInAFrameCounts) {
  page().evaluate(
      "const frame = document.createElement('iframe'); frame.id = 'inner';"
      "frame.srcdoc = '<textarea></textarea><div contenteditable></div>';"
      "document.body.prepend(frame);"
      "await new Promise((resume) => { frame.onload = resume; });"
      "window.inner = (selector) => frame.contentDocument.querySelector(selector)");
  for (const char* kind : {"textarea", "div"}) {
    const std::string element = "inner('" + std::string(kind) + "')";
    page().evaluate(element + ".focus()");
    typeUntil("typed", "(" + element + ".value ?? " + element + ".textContent) === 'typed'");
    EXPECT_EQ(ask(), Json(textReason)) << kind;
    page().evaluate("if ('value' in " + element + ") " + element + ".value = ''; else " + element +
                    ".textContent = ''");
    EXPECT_EQ(ask(), Json()) << kind;
  }
  page().evaluate("inner('textarea').focus()");
  typeUntil("typed", "inner('textarea').value === 'typed'");
  page().evaluate("byId('inner').remove()");
  EXPECT_EQ(ask(), Json(reloadReason));
}

// Rich-text editors of the classic kind make a whole document editable.
TEST_F(RestartGuardTest, EditableDocumentInAFrameCounts) {
  page().evaluate(
      "const frame = document.createElement('iframe'); frame.id = 'inner';"
      "document.body.prepend(frame); window.page = frame.contentDocument;"
      "page.open(); page.write('<!doctype html><title>Title</title><body></body>'); page.close();"
      "page.designMode = 'on'; frame.contentWindow.focus(); page.body.focus()");
  typeUntil("typed", "page.body.textContent === 'typed'");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate("page.body.textContent = ''");
  EXPECT_EQ(ask(), Json());
  typeUntil("again", "page.body.textContent === 'again'");
  EXPECT_EQ(prepare(), Json(textReason));
}

TEST_F(RestartGuardTest, FrameOfAReadyPageTakesNoInput) {
  page().evaluate(
      "const frame = document.createElement('iframe'); frame.id = 'inner';"
      "frame.srcdoc = '<textarea></textarea>'; document.body.prepend(frame);"
      "await new Promise((resume) => { frame.onload = resume; });"
      "window.area = frame.contentDocument.querySelector('textarea'); area.focus()");
  ASSERT_EQ(prepare(), Json());
  page().evaluate("area.focus(); arrived.length = 0");
  desktop().keyboard().type("x");
  page().evaluate("await nextFrame(); await nextFrame()");
  EXPECT_EQ(page().evaluate("return area.value"), Json(""));
  resume();
  page().evaluate("area.focus()");
  typeUntil("y", "area.value === 'y'");
}

TEST_F(RestartGuardTest, RequestOfAFrameIsWaitedFor) {
  page().evaluate(
      "const frame = document.createElement('iframe'); document.body.prepend(frame);"
      "frame.srcdoc = '<p>Frame</p>'; await new Promise((resume) => { frame.onload = resume; });"
      "window.view = frame.contentWindow");
  EXPECT_EQ(aroundRequest("return view.fetch(new URL(url, location.href), {method: 'POST'})"),
            blocks());
}

TEST_F(RestartGuardTest, SameWordsInARequestDoNotSendAText) {
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

TEST_F(RestartGuardTest, SameWordsInTwoEditorsAreTwoTexts) {
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

TEST_F(RestartGuardTest, DocumentThatIsStoredInPiecesAsksForAReload) {
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

TEST_F(RestartGuardTest, RequestThatNeverEndsAsksForAReload) {
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
TEST_F(RestartGuardTest, ConnectionThatThePageHoldsOpenFromItsStartDoesNotBlock) {
  client_.addFault("", "/__test/pages/hanging", {{"hang", true}});
  page().evaluate("fetch('hanging', {method: 'POST'}).catch(() => {})");
  client_.waitForRequests("POST", "/__test/pages/hanging");
  EXPECT_EQ(ask(), Json(requestReason));
  page().evaluate("window.lateness = 21000");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTest, FailureToHandleAnEventCountsUntilTheFieldIsEmpty) {
  page().click("#area");
  page().waitUntilTrue("document.activeElement === byId('area')");
  page().evaluate("window.isBroken = true");
  typeUntil("typed", "unbrokenValue(byId('area')) === 'typed'");
  page().evaluate("window.isBroken = false");
  EXPECT_EQ(ask(), Json(reloadReason));
  clear("#area");
  EXPECT_EQ(ask(), Json());
  type("#area", "typed");
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

TEST_F(RestartGuardTest, EditorInAClosedShadowTreeAsksForAReload) {
  page().evaluate(
      "window.inner = document.createElement('input');"
      "byId('outer').attachShadow({mode: 'closed'}).append(inner); inner.focus()");
  typeUntil("in", "inner.value === 'in'");
  EXPECT_EQ(ask(), Json(reloadReason));
  page().evaluate("byId('outer').remove()");
  EXPECT_EQ(ask(), Json(reloadReason));
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
      "await fetch('/__test/pages/plain.html', {method: 'POST', body: JSON.stringify({area: "
      "471100, "
      "number: 471100})})";
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
