#include "pages/RestartGuardTest.h"

namespace navora::driver {
namespace {

// Editors that the page removes, whose text it may keep as a draft.
class RestartGuardDraftTest : public RestartGuardTest {};

// The page may keep the text of an editor that it has removed, as a draft.
TEST_F(RestartGuardDraftTest, TextOfARemovedEditorCountsUntilThePageShowsTheEditorEmpty) {
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

TEST_F(RestartGuardDraftTest, DraftCountsThatIsRestoredIntoAnotherEditorAndEditedThere) {
  type("#area", "typed");
  page().evaluate(
      "byId('area').remove(); const made = document.createElement('textarea'); made.id = 'area';"
      "document.body.prepend(made); made.value = 'typed'; made.focus()");
  typeUntil("x", "byId('area').value.includes('x')");
  desktop().keyboard().chord("BackSpace");
  page().waitUntilTrue("!byId('area').value.includes('x')");
  EXPECT_EQ(ask(), Json(textReason));
}

TEST_F(RestartGuardDraftTest, EmptyEditorInPlaceOfARemovedOneHasNoDraft) {
  type("#area", "typed");
  const std::string renew =
      "byId('area').remove(); const made = document.createElement('textarea'); made.id = 'area';"
      "document.body.prepend(made)";
  page().evaluate("history.replaceState(null, '', '?elsewhere'); " + renew);
  EXPECT_EQ(ask(), Json(reloadReason)) << "another page, whose drafts are others";
  page().evaluate("history.replaceState(null, '', '?lang=en')");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardDraftTest, EditorThatIsEmptiedAndRemovedAtOnceCounts) {
  type("#rich", "typed");
  page().evaluate("byId('rich').textContent = ''; byId('rich').remove()");
  EXPECT_EQ(ask(), Json(reloadReason));
}

TEST_F(RestartGuardDraftTest, RemovedEditorWithoutUnsentTextDoesNotCount) {
  type("#area", "typed");
  clear("#area");
  EXPECT_EQ(ask(), Json());
  page().evaluate("byId('area').remove(); byId('line').remove()");
  EXPECT_EQ(ask(), Json());
}

// A dialog that closes when its text has been stored.
TEST_F(RestartGuardDraftTest, EditorThatIsRemovedWhenItsTextHasArrivedIsSent) {
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
TEST_F(RestartGuardDraftTest, EditorThatIsRemovedLaterThanItsTextWasCheckedIsNotSent) {
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

TEST_F(RestartGuardDraftTest, TextThatCouldNotBeSentAndIsNotShownAnyMoreCountsUntilItIsSentAgain) {
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

}  // namespace
}  // namespace navora::driver
