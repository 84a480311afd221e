#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "hosts/linux/web/PageBridge.h"
#include "linux/web/WebViewTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string post(const std::string& body) {
  return "webkit.messageHandlers.notes.postMessage(" + body + ");";
}

std::string script(const std::string& source) {
  return "<script>" + source + "</script>";
}

class PageBridgeTest : public WebViewTest {};

TEST_F(PageBridgeTest, DeliversAMessageOnceWithItsFrame) {
  server_.serveHtml("/notes", script(post("{text: 'Zürich', tags: [1, null]}")));
  ASSERT_TRUE(load("/notes?day=1#top"));
  ASSERT_TRUE(waitForMessages());
  ASSERT_EQ(messages_.received.size(), 1U);
  const auto& message = messages_.received[0];
  EXPECT_EQ(message.name, "notes");
  EXPECT_EQ(parseJson(message.body), (Json{{"text", "Zürich"}, {"tags", {1, nullptr}}}));
  EXPECT_TRUE(message.frame.isMainFrame);
  EXPECT_EQ(message.frame.requestUrl, testUrl(server_.url("/notes?day=1#top")));
}

TEST_F(PageBridgeTest, DeliversEveryKindOfBody) {
  ASSERT_TRUE(loadHtml(""));
  for (const char* body : {"'text'", "7", "true", "null", "undefined", "() => {}", "[]",
                           "'a' + '\\u{1F600}' + '\\0'", "NaN", "new Date(0)"}) {
    run(post(body));
  }
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.bodies(),
              ElementsAre("\"text\"", "7", "true", "null", "null", "null", "[]", "\"a😀\\u0000\"",
                          "null", "\"1970-01-01T00:00:00.000Z\""));
}

TEST_F(PageBridgeTest, KeepsTheOrderOfMessages) {
  ASSERT_TRUE(loadHtml(script("for (let number = 0; number < 50; ++number) " + post("number"))));
  ASSERT_TRUE(waitForMessages());
  ASSERT_EQ(messages_.received.size(), 50U);
  for (std::size_t number = 0; number < 50; ++number)
    EXPECT_EQ(messages_.received[number].body, std::to_string(number));
}

TEST_F(PageBridgeTest, OffersOnlyTheConfiguredHandlers) {
  auto several = configuration();
  several.messageHandlerNames = {"notes", "calendar"};
  makeView(several);
  ASSERT_TRUE(loadHtml(""));
  EXPECT_EQ(evaluate("Object.keys(webkit.messageHandlers)"), (Json{"notes", "calendar"}));
  run("webkit.messageHandlers.calendar.postMessage(1)");
  ASSERT_TRUE(waitForMessages());
  ASSERT_EQ(messages_.received.size(), 1U);
  EXPECT_EQ(messages_.received[0].name, "calendar");
}

TEST_F(PageBridgeTest, DeliversMessagesOfUserScriptsAtDocumentStart) {
  auto scripted = configuration();
  scripted.userScripts = {{post("'start'"), UserScript::InjectionTime::documentStart},
                          {post("'end'"), UserScript::InjectionTime::documentEnd}};
  makeView(scripted);
  ASSERT_TRUE(loadHtml(script(post("'page'"))));
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.bodies(), ElementsAre("\"start\"", "\"page\"", "\"end\""));
}

TEST_F(PageBridgeTest, ReportsThePresentAddressOfThePage) {
  ASSERT_TRUE(loadHtml(""));
  run("history.pushState(null, '', '/elsewhere?x=1')");
  run(post("1"));
  ASSERT_TRUE(waitForMessages());
  ASSERT_EQ(messages_.received.size(), 1U);
  EXPECT_EQ(messages_.received[0].frame.requestUrl, testUrl(server_.url("/elsewhere?x=1")));
}

TEST_F(PageBridgeTest, WorksOnEveryPageOfTheOrigin) {
  server_.serveHtml("/second", script(post("'second'")));
  ASSERT_TRUE(loadHtml(script(post("'first'"))));
  ASSERT_TRUE(load("/second"));
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.bodies(), ElementsAre("\"first\"", "\"second\""));
  EXPECT_EQ(messages_.received[1].frame.requestUrl, testUrl(server_.url("/second")));
}

TEST_F(PageBridgeTest, APageOfAnotherOriginHasNoBridge) {
  const HttpServer other;
  auto foreign = configuration();
  foreign.origin = testUrl(other.origin());
  makeView(foreign);
  ASSERT_TRUE(loadHtml(""));
  EXPECT_EQ(evaluate("typeof window.webkit"), "undefined");
}

// Script of a frame: tells its parent whether it has a bridge, and tries every way to announce a
// message.
std::string intruder() {
  return R"(
    const fact = JSON.stringify({kind: 'message', name: 'notes', body: '"forged"'});
    const found = typeof window.webkit;
    for (const channel of ['navora-announcement', 'navora-announcement-ready']) {
      for (const target of [window, document]) {
        target.dispatchEvent(new CustomEvent(channel, {detail: fact, bubbles: true}));
      }
    }
    try { window.webkit.messageHandlers.notes.postMessage('forged'); } catch {}
    try { window.webkit.messageHandlers.navoraBridge.postMessage(fact); } catch {}
    try { window.webkit.messageHandlers.navoraFrames.postMessage(fact); } catch {}
    parent.postMessage(found, '*');
  )";
}

struct FrameKind {
  const char* name;
  std::string html;
};

void PrintTo(const FrameKind& kind, std::ostream* stream) {
  *stream << kind.name;
}

class FrameTest : public WebViewTest, public testing::WithParamInterface<FrameKind> {};

TEST_P(FrameTest, HasNoBridgeAndCannotPost) {
  server_.serveHtml("/frame", script(intruder()));
  server_.serveHtml("/intruder.js", intruder());
  const std::string listener =
      script("window.reports = []; onmessage = (event) => void reports.push(event.data);");
  ASSERT_TRUE(loadHtml(listener + GetParam().html));
  ASSERT_TRUE(waitUntil([this] { return evaluate("reports.length") == 1; }));
  EXPECT_EQ(evaluate("reports[0]"), "undefined");
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.received, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryKind, FrameTest,
    testing::Values(
        FrameKind{"same origin", "<iframe src=/frame></iframe>"},
        FrameKind{"srcdoc", "<iframe srcdoc='<script src=/intruder.js></script>'></iframe>"},
        FrameKind{"sandboxed", "<iframe sandbox=allow-scripts src=/frame></iframe>"},
        FrameKind{"sandboxed same origin",
                  "<iframe sandbox='allow-scripts allow-same-origin' src=/frame></iframe>"},
        FrameKind{"blank", "<iframe id=blank></iframe>" +
                               script("const code = blank.contentDocument.createElement('script');"
                                      "code.src = '/intruder.js';"
                                      "blank.contentDocument.body.append(code);")},
        FrameKind{"nested",
                  "<iframe srcdoc='<script>onmessage = (event) => "
                  "parent.postMessage(event.data, \"*\");</script>"
                  "<iframe src=/frame></iframe>'></iframe>"}));

TEST_F(PageBridgeTest, AFrameOfAnotherOriginHasNoBridge) {
  HttpServer other;
  other.serveHtml("/frame", script(intruder()));
  ASSERT_TRUE(loadHtml(
      script("window.reports = []; onmessage = (event) => void reports.push(event.data);") +
      "<iframe src=" + other.url("/frame") + "></iframe>"));
  ASSERT_TRUE(waitUntil([this] { return evaluate("reports.length") == 1; }));
  EXPECT_EQ(evaluate("reports[0]"), "undefined");
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.received, IsEmpty());
}

TEST_F(PageBridgeTest, ReopeningTheDocumentKeepsOneBridge) {
  ASSERT_TRUE(loadHtml("first"));
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(evaluate("document.open(); document.write('<p>again</p>'); document.close(); "
                       "typeof webkit.messageHandlers.notes.postMessage"),
              "function");
  }
  run(post("'after'"));
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.bodies(), ElementsAre("\"after\""));
  EXPECT_TRUE(messages_.received[0].frame.isMainFrame);
}

TEST_F(PageBridgeTest, ThePageCannotReplaceTheBridge) {
  ASSERT_TRUE(loadHtml(""));
  evaluate(R"(
    try { window.webkit = {}; } catch {}
    try { delete window.webkit; } catch {}
    try { webkit.messageHandlers = {}; } catch {}
    try { webkit.messageHandlers.notes.postMessage = () => {}; } catch {}
    try { Object.defineProperty(window, 'webkit', {value: {}}); } catch {}
    null
  )");
  run(post("1"));
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.bodies(), ElementsAre("1"));
}

// Replaces everything that the bridge might call later.
constexpr const char* sabotage = R"(
  const forged = () => JSON.parse('{"top": true, "frameUrl": "https://forged.example/"}');
  JSON.stringify = () => '{"kind":"message","name":"notes","body":"\\"forged\\""}';
  JSON.parse = forged;
  window.CustomEvent = class { constructor() { throw 1; } };
  window.Event = class {};
  window.dispatchEvent = EventTarget.prototype.dispatchEvent = () => { throw 1; };
  window.addEventListener = EventTarget.prototype.addEventListener = () => { throw 1; };
  for (const name of ['push', 'forEach', 'map', 'join', 'find', 'slice', Symbol.iterator]) {
    Array.prototype[name] = () => { throw 1; };
  }
  Function.prototype.call = Function.prototype.apply = Function.prototype.bind = () => { throw 1; };
  Reflect.apply = Object.freeze = Object.defineProperty = Reflect.defineProperty = forged;
  window.String = window.URL = forged;
  Object.defineProperty = forged;
)";

TEST_F(PageBridgeTest, AHostilePageCannotForgeTheFrame) {
  ASSERT_TRUE(loadHtml(script(sabotage)));
  run(post("{text: 'real'}"));
  ASSERT_TRUE(waitForMessages());
  ASSERT_THAT(messages_.bodies(), ElementsAre(R"({"text":"real"})"));
  EXPECT_TRUE(messages_.received[0].frame.isMainFrame);
  EXPECT_EQ(messages_.received[0].frame.requestUrl, testUrl(server_.url("/page")));
}

TEST_F(PageBridgeTest, AForgedAnnouncementIsAttributedToThePage) {
  ASSERT_TRUE(loadHtml(""));
  run(R"(window.dispatchEvent(new CustomEvent('navora-announcement', {detail: JSON.stringify({
    kind: 'message', name: 'notes', body: '1',
    source: {top: true, frameUrl: 'https://forged.example/'},
    frameUrl: 'https://forged.example/'})})))");
  ASSERT_TRUE(waitForMessages());
  for (const auto& message : messages_.received)
    EXPECT_EQ(message.frame.requestUrl, testUrl(server_.url("/page")));
}

TEST_F(PageBridgeTest, MalformedAnnouncementsAreIgnored) {
  ASSERT_TRUE(loadHtml(""));
  for (const char* detail : {"null", "7", "{}", "'no JSON'", "'null'", "'[]'", "'{}'",
                             "'{\"kind\":\"message\"}'", "'{\"kind\":7,\"name\":\"notes\"}'",
                             "'{\"kind\":\"message\",\"name\":\"notes\",\"body\":{}}'",
                             "'{\"kind\":\"unknown\",\"href\":\"https://x/\"}'",
                             "'['.repeat(100000)", "'\"' + 'x'.repeat(5000000) + '\"'"}) {
    run(std::string("window.dispatchEvent(new CustomEvent('navora-announcement', {detail: ") +
        detail + "}))");
  }
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.received, IsEmpty());
}

}  // namespace
}  // namespace navora
