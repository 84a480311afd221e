#include "pages/RestartGuardTest.h"

namespace navora::driver {
namespace {

// Choices in forms, and the submission of forms.
class RestartGuardFormTest : public RestartGuardTest {};

TEST_F(RestartGuardFormTest, ChangedChoiceInAFormBlocksUntilItIsAsBefore) {
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

TEST_F(RestartGuardFormTest, ChoiceOutsideOfAFormDoesNotCount) {
  page().evaluate("byId('loose').focus()");
  typeUntil("t", "byId('loose').value === 'two'");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardFormTest, NumberInARequestMatchesOnlyANumberField) {
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

TEST_F(RestartGuardFormTest, ChoiceThatARequestTookWithItIsSent) {
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

TEST_F(RestartGuardFormTest, FormThatThePageSubmitsItself) {
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

TEST_F(RestartGuardFormTest, SubmitWithoutARequestSettlesChoicesButNoText) {
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
TEST_F(RestartGuardFormTest, SubmissionUnderWayBlocks) {
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

TEST_F(RestartGuardFormTest, SubmissionByThePageBlocks) {
  client_.addFault("POST", "/__test/pages/landed.html", {{"hang", true}});
  EXPECT_EQ(page().evaluate("byId('form').submit(); return NavoraUpdateGuard.prepare()"),
            Json(requestReason));
}

TEST_F(RestartGuardFormTest, SubmissionIntoAFrameSendsTheText) {
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
