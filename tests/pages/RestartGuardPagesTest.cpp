#include <array>
#include <cstdio>
#include <set>

#include "pages/RestartGuardPage.h"

namespace navora::driver {
namespace {

// The guard in pages in other languages, pages with a guard of their own, hostile pages, and the
// service's.
class RestartGuardPagesTest : public RestartGuardPage {
 protected:
  std::string inLanguage(const std::string& language) {
    return page().evaluate("document.documentElement.lang = " + Json(language).dump() +
                           ";\nconst end = fetch('/__test/pages/plain.html', {method: 'POST'});"
                           "const answer = NavoraUpdateGuard.prepare(); await end; return answer");
  }

  void openOwn(const std::string& guard) {
    std::string query;
    for (const char letter : guard) {
      std::array<char, 4> code{};
      std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned char>(letter));
      query += code.data();
    }
    open("/__test/pages/own-guard.html?guard=" + query);
  }

  ServiceClient client_{service().controlUrl()};
};

TEST_F(RestartGuardPagesTest, ReasonsAreInThePagesLanguage) {
  open(fields);
  const std::vector<std::pair<std::string, std::string>> reasons{
      {"ru", "Дождитесь сохранения изменений, затем продолжите обновление."},
      {"en", requestReason},
      {"es", "Espera a que se guarden los cambios y después continúa la actualización."},
      {"pt-BR", "Aguarde até que as alterações sejam salvas e depois continue a atualização."},
      {"de", "Warte, bis deine Änderungen gespeichert sind, und setze dann das Update fort."},
      {"fr", "Attendez que vos modifications soient enregistrées, puis poursuivez la mise à jour."},
      {"ja", "変更の保存が終わるのを待ってから、アップデートを続けてください。"}};
  for (const auto& [language, reason] : reasons)
    EXPECT_EQ(inLanguage(language), reason) << language;
  EXPECT_EQ(inLanguage("DE-at"), reasons[4].second);
  EXPECT_EQ(inLanguage("pt"), reasons[3].second);
  // Neither the page's language nor one with the same prefix.
  page().evaluate("Object.defineProperty(navigator, 'language', {value: 'fr-CA'})");
  for (const char* unknown : {"", "it", "deu", "constructor", "\xF0\x9F\x98\x80"})
    EXPECT_EQ(inLanguage(unknown), reasons[5].second) << unknown;
  page().evaluate(
      "Object.defineProperty(Navigator.prototype, 'language', {value: 'it'});"
      "delete navigator.language");
}

TEST_F(RestartGuardPagesTest, EveryReasonIsInEveryLanguage) {
  open(fields);
  type("#area", "typed");
  page().click("#check");
  page().waitUntilTrue("byId('check').checked");
  const std::string ask =
      "return ['ru', 'en', 'es', 'pt-BR', 'de', 'fr', 'ja'].map((language) => {"
      "  document.documentElement.lang = language; return NavoraUpdateGuard.prepare(); })";
  const std::vector<std::string> text = page().evaluate(ask);
  page().evaluate("byId('area').value = ''");
  const std::vector<std::string> form = page().evaluate(ask);
  page().evaluate(
      "byId('area').value = 'typed'; NavoraUpdateGuard.prepare(); byId('area').remove()");
  const std::vector<std::string> reload = page().evaluate(ask);
  client_.addFault("", "/__test/pages/hanging", {{"hang", true}});
  page().evaluate("fetch('hanging', {method: 'POST'}).catch(() => {}); window.lateness = 21000");
  const std::vector<std::string> stuck = page().evaluate(ask);
  std::set<std::string> all;
  for (const auto& reasons : {text, form, reload, stuck})
    all.insert(reasons.begin(), reasons.end());
  EXPECT_EQ(all.size(), 28U);
  EXPECT_EQ(text[1], textReason);
  EXPECT_EQ(form[1], formReason);
  EXPECT_EQ(reload[1], reloadReason);
  EXPECT_EQ(stuck[1], stuckReason);
}

TEST_F(RestartGuardPagesTest, UnknownLanguagesGetEnglish) {
  open("/__test/pages/fields.html?lang=it");
  page().evaluate("Object.defineProperty(navigator, 'language', {get() { throw new Error(); }})");
  EXPECT_EQ(inLanguage("it"), requestReason);
}

TEST_F(RestartGuardPagesTest, GuardOfThePageWinsHoweverItIsMade) {
  const std::string own = "{prepare: () => 'own reason', resume() { window.resumed = true; }}";
  for (const std::string& guard :
       {"window.NavoraUpdateGuard = " + own, "var NavoraUpdateGuard = " + own,
        "Object.defineProperty(window, 'NavoraUpdateGuard', {value: " + own + "})",
        "function NavoraUpdateGuard() {} Object.assign(NavoraUpdateGuard, " + own + ")",
        "delete window.NavoraUpdateGuard; window.NavoraUpdateGuard = Object.freeze(" + own + ")"}) {
    openOwn(guard);
    EXPECT_EQ(prepare(), Json("own reason")) << guard;
    resume();
    EXPECT_EQ(page().evaluate("return window.resumed"), Json(true)) << guard;
  }
}

TEST_F(RestartGuardPagesTest, GuardOfThePageCanAskTheOtherOne) {
  openOwn(
      "const generic = window.NavoraUpdateGuard;"
      "window.NavoraUpdateGuard = {prepare: () => window.own ?? generic.prepare(), "
      "resume: generic.resume}");
  page().evaluate("window.own = 'own reason'");
  EXPECT_EQ(prepare(), Json("own reason"));
  page().evaluate("window.own = null");
  EXPECT_EQ(prepare(), Json());
  resume();
  type("#area", "typed");
  EXPECT_EQ(prepare(), Json(textReason));
}

TEST_F(RestartGuardPagesTest, ChangedBuiltInObjectsHaveNoEffect) {
  open(fields);
  page().evaluate(R"(
    const fail = () => { throw new Error('broken by the page'); };
    const {apply} = Reflect;
    const {defineProperty, getOwnPropertyDescriptor} = Object;
    const known = [];
    const take = (owner, names) => {
      for (const name of names) known.push({owner, name, as: getOwnPropertyDescriptor(owner, name)});
    };
    take(Array.prototype, ['push', 'map', 'filter', 'forEach', 'some', 'includes', Symbol.iterator]);
    take(String.prototype, ['trim', 'toLowerCase', 'slice', 'includes', 'indexOf', 'replace']);
    take(RegExp.prototype, ['exec', 'test', Symbol.replace]);
    take(WeakMap.prototype, ['get', 'set', 'has']);
    take(WeakRef.prototype, ['deref']);
    take(Function.prototype, ['call', 'apply', 'bind']);
    take(Reflect, ['apply']);
    take(Object, ['keys', 'defineProperty', 'freeze']);
    take(JSON, ['parse']);
    take(URLSearchParams.prototype, ['forEach']);
    take(Event.prototype, ['preventDefault', 'stopImmediatePropagation', 'composedPath', 'type']);
    take(EventTarget.prototype, ['addEventListener']);
    take(Node.prototype, ['appendChild', 'isConnected', 'textContent']);
    take(Element.prototype, ['remove', 'getAttribute', 'closest', 'querySelectorAll']);
    take(HTMLElement.prototype, ['focus', 'blur', 'isContentEditable']);
    take(HTMLTextAreaElement.prototype, ['value', 'defaultValue', 'form']);
    take(HTMLDialogElement.prototype, ['showModal', 'close']);
    take(Document.prototype, ['documentElement', 'activeElement']);
    const value = getOwnPropertyDescriptor(HTMLTextAreaElement.prototype, 'value');
    window.areaText = () => apply(value.get, byId('area'), []);
    window.clearArea = () => apply(value.set, byId('area'), ['  ']);
    window.breakAll = () => {
      for (let index = 0; index < known.length; ++index) {
        const {owner, name, as} = known[index];
        const broken = as.get ? {get: fail} : {value: fail};
        defineProperty(owner, name, {...broken, configurable: true});
      }
    };
    window.mendAll = () => {
      for (let index = 0; index < known.length; ++index) {
        defineProperty(known[index].owner, known[index].name, known[index].as);
      }
    };
    window.whileBroken = (work) => {
      breakAll();
      try {
        return work() ?? null;
      } finally {
        mendAll();
      }
    };
    byId('area').focus();
  )");
  EXPECT_ANY_THROW(page().evaluate("whileBroken(() => [1].map(String))"));
  EXPECT_ANY_THROW(page().evaluate("return whileBroken(() => byId('area').value)"));
  page().evaluate("breakAll()");
  typeUntil("typed", "areaText() === 'typed'");
  page().evaluate("mendAll()");
  const std::string answer = "return whileBroken(() => window.NavoraUpdateGuard.prepare())";
  EXPECT_EQ(page().evaluate(answer), Json(textReason));
  page().evaluate("clearArea()");
  EXPECT_EQ(page().evaluate(answer), Json());
  page().evaluate("arrived.length = seen.length = 0; breakAll()");
  typeUntil("x", "arrived.length >= 2");
  page().evaluate("mendAll()");
  EXPECT_EQ(page().evaluate("return [seen, areaText()]"), (Json{Json::array(), "  "}));
  page().evaluate("whileBroken(() => window.NavoraUpdateGuard.resume())");
  typeUntil("y", "areaText() === '  y'");
  expectNoFailures();
}

TEST_F(RestartGuardPagesTest, PageWithThrowingListenersIsGuardedToo) {
  open(fields);
  page().evaluate(
      "for (const type of inputTypes) window.addEventListener(type, (event) => {"
      "  event.stopImmediatePropagation(); throw new Error('of the page'); }, true)");
  type("#area", "typed");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate("byId('area').value = ''; failures.length = 0");
  EXPECT_EQ(prepare(), Json());
  page().evaluate("arrived.length = 0");
  typeUntil("x", "arrived.includes('keyup')");
  expectNoFailures();
}

TEST_F(RestartGuardPagesTest, FieldsThatBearTheNamesOfPropertiesAreFields) {
  open(fields);
  page().evaluate(
      "for (const name of ['elements', 'method', 'target', 'isConnected', 'getAttribute', "
      "'closest',"
      "  'textContent']) { const made = document.createElement('input'); made.name = name;"
      "  byId('form').append(made); }"
      "byId('form').addEventListener('submit', (event) => event.preventDefault())");
  page().click("#check");
  page().waitUntilTrue("byId('check').checked");
  EXPECT_EQ(ask(), Json(formReason));
  page().click("#send");
  page().waitUntilTrue("NavoraUpdateGuard.prepare() === undefined");
  expectNoFailures();
}

TEST_F(RestartGuardPagesTest, RewrittenDocumentIsGuardedToo) {
  open(fields);
  page().evaluate(
      "document.open(); document.write('<!doctype html><textarea id=area></textarea>');"
      "document.close()");
  page().waitUntilTrue("document.readyState === 'complete' && !!document.querySelector('#area')");
  page().evaluate("document.querySelector('#area').focus()");
  typeUntil("typed", "document.querySelector('#area').value === 'typed'");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate("document.querySelector('#area').value = ''");
  EXPECT_EQ(prepare(), Json());
}

TEST_F(RestartGuardPagesTest, GuardInstalledTwiceIsOne) {
  open(fields);
  page().evaluate("window.first = window.NavoraUpdateGuard; window.firstFetch = fetch");
  page().evaluate("(0, eval)(" + Json(readFile(RESTART_GUARD_SCRIPT)).dump() + ")");
  EXPECT_EQ(page().evaluate("return first === NavoraUpdateGuard && fetch === firstFetch"),
            Json(true));
}

TEST_F(RestartGuardPagesTest, LoginPageIsGuarded) {
  open("/login");
  EXPECT_EQ(ask(), Json());
  page().type("#login-name", "demo");
  page().waitUntilTrue("document.querySelector('#login-name').value === 'demo'");
  EXPECT_EQ(ask(), Json(textReason));
}

TEST_F(RestartGuardPagesTest, TodayViewIsReadyWhenIdle) {
  openToday();
  EXPECT_EQ(prepare(), Json());
  typeUntil("x", "arrived.includes('keyup')");
  EXPECT_EQ(page().evaluate("return document.querySelector('#capture-input').textContent"),
            Json(""));
  resume();
  page().type("#capture-input", "Now");
  page().waitUntilTrue("document.querySelector('#capture-input').textContent === 'Now'");
}

TEST_F(RestartGuardPagesTest, TodayViewReportsItsDraftAndANoteBeingSaved) {
  openToday();
  page().type("#capture-input", "A draft");
  page().waitUntilTrue("sessionStorage.getItem('navora.draft') === 'A draft'");
  const Json draft = "Save or delete the note you’re writing, then continue the update.";
  EXPECT_EQ(ask(), draft);
  // Not typed in this document, but user input nevertheless.
  page().tryEvaluate("setTimeout(() => location.reload()); return true");
  page().waitUntilTrue(
      "document.querySelectorAll('.note').length > 0 && arrived.length === 0 && "
      "document.querySelector('#capture-input').textContent === 'A draft'");
  EXPECT_EQ(ask(), draft);
  client_.addFault("POST", "/api/captures", {{"hang", true}});
  page().click("#capture-submit");
  client_.waitForRequests("POST", "/api/captures");
  EXPECT_EQ(ask(), Json("Wait until your note has been saved, then continue the update."));
  client_.clearFaults();
  page().waitUntilTrue("!document.querySelector('#capture-form').hasAttribute('aria-busy')");
  EXPECT_EQ(ask(), draft);
  page().click("#capture-submit");
  page().waitUntilTrue("document.querySelector('.note-text').innerText === 'A draft'");
  page().waitUntilTrue("NavoraUpdateGuard.prepare() === undefined");
}

TEST_F(RestartGuardPagesTest, ServicesReasonsAreInItsLanguage) {
  openToday();
  page().type("#capture-input", "A draft");
  page().waitUntilTrue("sessionStorage.getItem('navora.draft') === 'A draft'");
  const std::vector<std::string> all = page().evaluate(
      "return ['ru', 'en', 'es', 'pt-BR', 'de', 'fr', 'ja', 'it'].map((language) => {"
      "  document.documentElement.lang = language; return NavoraUpdateGuard.prepare(); })");
  EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), 7U);
  EXPECT_EQ(all[4], "Speichere oder lösche die angefangene Notiz und setze dann das Update fort.");
  EXPECT_EQ(all[7], all[1]);
}

TEST_F(RestartGuardPagesTest, OtherViewsOfTheServiceAreGuarded) {
  openToday();
  page().click("[data-nav=circles]");
  page().type("#message-input", "Hello");
  page().waitUntilTrue("document.querySelector('#message-input').value === 'Hello'");
  EXPECT_EQ(ask(), Json(textReason));
  desktop().keyboard().chord("Return");
  page().waitUntilTrue("document.querySelector('#message-input').value === ''");
  page().waitUntilTrue("NavoraUpdateGuard.prepare() === undefined");
  resume();
  page().click("[data-nav=calendar]");
  page().type("#event-title", "Lunch");
  page().waitUntilTrue("document.querySelector('#event-title').value === 'Lunch'");
  EXPECT_EQ(ask(), Json(textReason));
}

TEST_F(RestartGuardPagesTest, ProviderThatIsStoredAtOnceDoesNotBlock) {
  openToday();
  page().evaluate("document.querySelector('#ai-provider').focus()");
  typeUntil("g", "document.querySelector('#ai-provider').value === 'gemini'");
  client_.waitForRequests("PUT", "/api/settings");
  page().waitUntilTrue("NavoraUpdateGuard.prepare() === undefined");
}

// The service's pages in a browser, without the guard.
class ServiceWithoutRestartGuardTest : public PageTest {};

TEST_F(ServiceWithoutRestartGuardTest, PageAloneDoesNotReportThatItIsReady) {
  openToday();
  EXPECT_EQ(page().evaluate("return typeof window.NavoraUpdateGuard"), Json("undefined"));
}

}  // namespace
}  // namespace navora::driver
