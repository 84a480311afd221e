#include <string>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"

namespace navora::driver {
namespace {

// Messages of a page that cannot load its settings, so that only the test's messages announce a
// language.
class PageMessageTest : public TestPageTest {
 protected:
  void SetUp() override {
    TestPageTest::SetUp();
    if (HasFatalFailure()) return;
    serviceClient().addFault("GET", "/api/settings", {{"garbage", true}});
    openBridgePage();
  }

  // Asks the application itself, after all earlier messages.
  bool isRussian() { return hasWidget("frame", "Навора"); }
  bool isEnglish() { return hasWidget("frame", "Navora"); }

  void chooseRussian() {
    page().evaluate("post('navoraLocale', {requestedLocale: 'ru'})");
    waitUntil([&] { return isRussian(); }, "the interface is in Russian");
  }

  // Expects that none of the bodies, which are script expressions, has an effect, and that the
  // bridge still works.
  void expectIgnored(const std::string& bodies) {
    page().evaluate("for (const body of [" + bodies + "]) post('navoraLocale', body)");
    settle();
    EXPECT_TRUE(isEnglish());
    chooseRussian();
  }
};

TEST_F(PageMessageTest, IgnoresInvalidLocaleMessages) {
  expectIgnored(
      "undefined, null, 0, NaN, true, '', 'ru', [], ['ru'], {}, () => 'ru', Symbol('ru'), "
      "new Map([['requestedLocale', 'ru']]), {requestedlocale: 'ru'}, {requestedLocale: null}, "
      "{requestedLocale: 7}, {requestedLocale: ['ru']}, {requestedLocale: {ru: 'ru'}}, "
      "{requestedLocale: () => 'ru'}");
}

TEST_F(PageMessageTest, IgnoresUnsupportedLanguages) {
  expectIgnored(
      "{requestedLocale: ''}, {requestedLocale: 'xx'}, {requestedLocale: 'RU'}, "
      "{requestedLocale: 'ru-RU'}, {requestedLocale: ' ru'}, {requestedLocale: 'ru\\0'}, "
      "{requestedLocale: '\\ud800'}, {requestedLocale: 'pt-PT'}, {requestedLocale: 'pt'}");
}

TEST_F(PageMessageTest, IgnoresTheWholeMessageForAnUnusableDetectedLanguage) {
  expectIgnored(
      "{requestedLocale: 'ru', detectedLocale: 'xx'}, {requestedLocale: 'ru', detectedLocale: ''},"
      "{requestedLocale: 'ru', detectedLocale: 7}, {requestedLocale: 'ru', detectedLocale: []}, "
      "{requestedLocale: 'ru', detectedLocale: false}");
}

TEST_F(PageMessageTest, IgnoresBodiesOfMoreThanAMebibyte) {
  page().evaluate(
      "window.padded = (length) => ({requestedLocale: 'ru', padding: "
      "'x'.repeat(length - JSON.stringify({requestedLocale: 'ru', padding: ''}).length)"
      "})");
  expectIgnored("padded(1024 * 1024 + 1), padded(5 * 1024 * 1024), padded(40 * 1024 * 1024)");
}

TEST_F(PageMessageTest, AcceptsABodyOfAMebibyteWithAnyCharacters) {
  for (const std::string character : {"'x'", "'\"'", "'\\\\'", "'\\u0001'", "'я'"}) {
    page().evaluate(
        "const mebibyte = 1024 * 1024, message = {requestedLocale: 'ru', padding: ''};"
        "const bytes = (text) => new TextEncoder().encode(JSON.stringify(text)).length;"
        "const room = mebibyte - bytes(message), each = bytes(" +
        character +
        ") - 2;"
        "message.padding = " +
        character +
        ".repeat(Math.floor(room / each));"
        "post('navoraLocale', message)");
    settle();
    EXPECT_TRUE(isRussian()) << character;
    page().evaluate("post('navoraLocale', {requestedLocale: 'en'})");
    settle();
    EXPECT_TRUE(isEnglish()) << character;
  }
}

TEST_F(PageMessageTest, IgnoresBodiesThatNestTooDeep) {
  page().evaluate(
      "window.nested = (depth) => { let body = {requestedLocale: 'ru'};"
      "  for (let level = 0; level < depth; ++level) body = [body];"
      "  return {requestedLocale: 'ru', body}; }");
  expectIgnored("nested(600), nested(20000)");
}

TEST_F(PageMessageTest, OmitsFromABodyWhatIsNotData) {
  page().evaluate(
      "post('navoraLocale', {requestedLocale: 'ru', run: () => 1, nothing: undefined,"
      " [Symbol('key')]: 1, node: document.body})");
  waitUntil([&] { return isRussian(); }, "the rest of the message is obeyed");
}

TEST_F(PageMessageTest, ReportsUnsendableBodiesToThePage) {
  const auto thrown = page().evaluate(
      "const cyclic = {requestedLocale: 'ru'}; cyclic.self = cyclic;"
      "const failing = {get requestedLocale() { throw new RangeError('not now'); }};"
      "return [cyclic, 1n, failing].map((body) => {"
      "  try { post('navoraLocale', body); return 'sent'; } catch (error) { return error.name; }"
      "})");
  EXPECT_EQ(thrown, Json({"TypeError", "TypeError", "RangeError"}));
  settle();
  EXPECT_TRUE(isEnglish());
  chooseRussian();
}

TEST_F(PageMessageTest, FollowsTheLastOfAThousandMessages) {
  page().evaluate(
      "for (let count = 0; count < 500; ++count) {"
      "  post('navoraLocale', {requestedLocale: 'en'});"
      "  post('navoraLocale', {requestedLocale: 'ru'});"
      "}");
  settle();
  EXPECT_TRUE(isRussian());
  page().click("#count");
  page().waitUntilTrue("document.body.dataset.clicks === '1'", "the page takes clicks");
}

TEST_F(PageMessageTest, HasNoOtherHandlersThanItsOwn) {
  EXPECT_EQ(page().evaluate("return Object.getOwnPropertyNames(webkit.messageHandlers).sort()"),
            Json({"navoraCaptureAppearance", "navoraLocale", "navoraNotifications",
                  "navoraTimeZoneDetection"}));
  const auto error = page().evaluate(
      "try { post('navoraUnknown', {requestedLocale: 'ru'}); return 'sent'; }"
      "catch (error) { return error.name; }");
  EXPECT_EQ(error, "TypeError");
}

TEST_F(PageMessageTest, KeepsTheBridgeWhateverThePageDoesToIt) {
  page().evaluate(
      "const attempts = ["
      "  () => { delete window.webkit; }, () => { window.webkit = undefined; },"
      "  () => { webkit.messageHandlers = {}; }, () => { delete webkit.messageHandlers; },"
      "  () => { webkit.messageHandlers.navoraLocale = null; },"
      "  () => { webkit.messageHandlers.navoraLocale.postMessage = () => {}; },"
      "  () => { Object.defineProperty(window, 'webkit', {value: {}}); }];"
      "for (const attempt of attempts) { try { attempt(); } catch {} }");
  // Restored at once, because the driver uses them too.
  page().evaluate(
      "const replacements = [[JSON, 'stringify', () => 'null'], [Reflect, 'apply', () => {}],"
      "  [EventTarget.prototype, 'dispatchEvent', () => true], [window, 'CustomEvent', class {}],"
      "  [window, 'String', () => ''], [Array.prototype, 'push', () => 0],"
      "  [Array.prototype, 'forEach', () => {}]];"
      "const originals = replacements.map(([owner, name]) => owner[name]);"
      "for (const [owner, name, replacement] of replacements) owner[name] = replacement;"
      "post('navoraLocale', {requestedLocale: 'ru'});"
      "for (let index = 0; index < originals.length; ++index)"
      "  replacements[index][0][replacements[index][1]] = originals[index];");
  settle();
  EXPECT_TRUE(isRussian());
}

TEST_F(PageMessageTest, IgnoresInvalidAnnouncements) {
  page().evaluate(
      "const message = (fields) => JSON.stringify({kind: 'message', ...fields});"
      "const body = JSON.stringify({requestedLocale: 'ru'});"
      "const details = [undefined, null, 7, {}, '', 'no JSON', '[]', 'null', '7', '{}',"
      "  message({}), message({name: 'navoraLocale'}), message({body}),"
      "  message({name: 7, body}), message({name: 'navoraLocale', body: {requestedLocale: 'ru'}}),"
      "  message({name: 'navoraUnknown', body}), message({name: '', body}),"
      "  message({name: 'navoraLocale', body: 'no JSON'}), message({name: 'navoraLocale', body: "
      "''}),"
      "  JSON.stringify({kind: 'unknown', name: 'navoraLocale', body}),"
      "  JSON.stringify({kind: 7, name: 'navoraLocale', body}),"
      "  JSON.stringify({kind: 'link'}), JSON.stringify({kind: 'link', href: 7}),"
      "  JSON.stringify({kind: 'open', href: 'no address'}), '['.repeat(100000),"
      "  message({name: 'navoraLocale', body, padding: 'x'.repeat(20 * 1024 * 1024)})];"
      "for (const detail of details) "
      "  window.dispatchEvent(new CustomEvent('navora-announcement', {detail}));"
      "for (const end of ['ready', 'hello'])"
      "  window.dispatchEvent(new CustomEvent('navora-announcement-' + end));");
  settle();
  EXPECT_TRUE(isEnglish());
  chooseRussian();
}

TEST_F(PageMessageTest, PublishesTheTimeZoneBeforeThePagesFirstScriptAndAgainAfterTheMessage) {
  const std::string zone = page().evaluate("return window.zoneAtFirstScript");
  EXPECT_FALSE(zone.empty());
  for (const auto& event : page().evaluate("return window.events"))
    EXPECT_EQ(event, "systemtimezonechange " + zone);
  page().evaluate("window.NavoraSystemTimeZone = 'changed by the page'");
  settle();
  EXPECT_EQ(page().evaluate("return window.NavoraSystemTimeZone"), zone);
}

TEST_F(PageMessageTest, SendsEachEventOnceToARewrittenDocument) {
  page().evaluate(
      "document.open(); document.write('<!doctype html><title>Anew</title>');"
      "document.close(); await roundTrip(); window.events = []; window.watch();"
      "for (let count = 0; count < 10; ++count) post('navoraTimeZoneDetection', {});");
  chooseRussian();
  page().waitUntilTrue("window.events.length >= 10");
  settle();
  // The new document's message and the round trips may add a few; a bridge installed twice would
  // double them.
  EXPECT_LE(page().evaluate("return window.events.length"), 15);
}

TEST_F(PageMessageTest, RequestsTheSettingsOnceFromARewrittenDocument) {
  page().evaluate(
      "document.open(); document.write('<!doctype html><title>Anew</title>');"
      "document.close(); await roundTrip(); await fetch('/before')");
  serviceClient().clearRequests();
  page().evaluate("await synchronize(); await fetch('/after')");
  serviceClient().waitForRequests("GET", "/after");
  EXPECT_EQ(serviceClient().requests("GET", "/api/settings").size(), 1u);
}

}  // namespace
}  // namespace navora::driver
