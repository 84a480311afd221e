#include "pages/PageTest.h"

namespace navora::driver {
namespace {

// The today view as the user sees it.
class TodayViewTest : public PageTest {
 protected:
  // Sends a note as another client with the same session.
  std::string storeNote(const std::string& text) {
    return page().evaluate(
        "const note = {method: 'POST', headers: {'Content-Type': 'application/json'}, body: " +
        Json(Json{{"raw", text}}.dump()).dump() +
        "};\nreturn (await (await fetch('/api/captures', note)).json()).captureId");
  }

  ServiceClient client_{service().controlUrl()};
};

TEST_F(TodayViewTest, NoteOfAnotherProgramAppearsWithTheStateOfItsJob) {
  openToday();
  page().evaluate("window.notReloaded = true");
  const std::string note = "document.querySelector('#note-" + storeNote("From elsewhere") + "')";
  page().waitUntilTrue(note + "?.dataset.state === 'running'");
  page().waitUntilTrue(note + ".innerText.includes('From elsewhere')");
  page().waitUntilTrue(note + "?.dataset.state === 'done'");
  EXPECT_EQ(page().evaluate("return window.notReloaded"), Json(true));
}

TEST_F(TodayViewTest, NoteDeletedElsewhereDisappears) {
  openToday();
  const std::string id = page().evaluate("return document.querySelector('.note').id.slice(5)");
  page().evaluate("await fetch('/api/captures/" + id + "', {method: 'DELETE'})");
  page().waitUntilTrue("!document.querySelector('#note-" + id + "')");
}

TEST_F(TodayViewTest, RecoversFromAnInterruption) {
  openToday();
  service().stop();
  service().start();
  const std::string id = storeNote("After the interruption");
  page().waitUntilTrue("!!document.querySelector('#note-" + id + "')");
}

TEST_F(TodayViewTest, ProviderAndModelAreRemembered) {
  openToday();
  page().evaluate(
      "for (const [id, value] of [['ai-provider', 'gemini'], ['ai-model', 'thorough']]) {"
      "  const select = document.getElementById(id); select.value = value;"
      "  select.dispatchEvent(new Event('change')); }");
  const auto isStored = [this] {
    const Json settings =
        page().evaluate("return (await (await fetch('/api/settings')).json()).settings");
    return settings["provider"] == "gemini" && settings["model"] == "thorough";
  };
  waitUntil(isStored, "the service knows the provider and the model");
  page().tryEvaluate("setTimeout(() => location.reload()); return true");
  page().waitUntilTrue(
      "document.querySelectorAll('.note').length > 0 && "
      "document.querySelector('#ai-provider').value === 'gemini' && "
      "document.querySelector('#ai-model').value === 'thorough'");
}

TEST_F(TodayViewTest, EditorIsTheCardOfThePanel) {
  openToday();
  const std::string measures = R"(
    const of = (selector) => getComputedStyle(document.querySelector(selector));
    const card = document.querySelector('.capture-editor').getBoundingClientRect();
    const button = document.querySelector('#capture-submit').getBoundingClientRect();
    const input = document.querySelector('#capture-input').getBoundingClientRect();
    return {radius: of('.capture-editor').borderTopLeftRadius, width: button.width,
      height: button.height, round: of('#capture-submit').borderTopLeftRadius,
      left: input.left - card.left, right: card.right - button.right,
      bottom: card.bottom - button.bottom, whole: card.height})";
  page().evaluate("document.documentElement.dataset.theme = 'dark'");
  EXPECT_EQ(page().evaluate(measures), (Json{{"radius", "23px"},
                                             {"width", 38},
                                             {"height", 38},
                                             {"round", "50%"},
                                             {"left", 25},
                                             {"right", 25},
                                             {"bottom", 25},
                                             {"whole", 167}}));
  page().evaluate("document.documentElement.dataset.theme = 'light'");
  EXPECT_EQ(page().evaluate(measures), (Json{{"radius", "18px"},
                                             {"width", 38},
                                             {"height", 38},
                                             {"round", "50%"},
                                             {"left", 17},
                                             {"right", 17},
                                             {"bottom", 17},
                                             {"whole", 151}}));
}

TEST_F(TodayViewTest, TestsSeeTheNotesWithTheirKeys) {
  openToday();
  page().evaluate(
      "document.querySelector('#capture-input').textContent = 'Seen by a test';"
      "document.querySelector('#capture-input').dispatchEvent(new Event('input'));"
      "document.querySelector('#capture-submit').click()");
  page().waitUntilTrue("document.querySelector('.note-text').innerText === 'Seen by a test'");
  const Json notes = client_.captures();
  EXPECT_EQ(notes[0]["raw"], "Seen by a test");
  EXPECT_THAT(notes[0]["idempotencyKey"].get<std::string>(), testing::StartsWith("web-"));
  EXPECT_EQ(client_.captures("other"), Json::array());
}

TEST_F(TodayViewTest, SessionCanBecomeAnotherAccounts) {
  openToday();
  const std::string me = "return (await (await fetch('/api/auth/me')).json()).user.id";
  const Json before = page().evaluate(me);
  const std::string other = client_.switchAccount("other");
  EXPECT_NE(before, other);
  EXPECT_EQ(page().evaluate(me), other);
  EXPECT_EQ(Json(client_.switchAccount("demo")), before);
  EXPECT_EQ(page().evaluate(me), before);
}

TEST_F(TodayViewTest, CookiesOfEveryKindCanBeSet) {
  openToday();
  client_.setCookies(page(), {"seen=1; Path=/", "deep=2; Path=/api", "gone=3; Path=/; Max-Age=0",
                              "hidden=4; Path=/; HttpOnly"});
  EXPECT_EQ(page().evaluate("return document.cookie"), "seen=1");
  page().evaluate("await fetch('/api/auth/me')");
  const std::string sent =
      client_.waitForRequests("GET", "/api/auth/me").back().header("Cookie").value_or("");
  EXPECT_THAT(sent, testing::HasSubstr("deep=2"));
  EXPECT_THAT(sent, testing::HasSubstr("hidden=4"));
  EXPECT_THAT(sent, testing::Not(testing::HasSubstr("gone")));
}

}  // namespace
}  // namespace navora::driver
