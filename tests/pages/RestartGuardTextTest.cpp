#include "pages/RestartGuardTest.h"

namespace navora::driver {
namespace {

// Text that the user typed into an editor of the page itself.
class RestartGuardTextTest : public RestartGuardTest {};

TEST_F(RestartGuardTextTest, UntouchedPageIsReady) {
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

TEST_F(RestartGuardTextTest, TypedTextBlocksInEveryKindOfEditorUntilItIsCleared) {
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

TEST_F(RestartGuardTextTest, DeletedTextDoesNotCount) {
  type("#area", "ab");
  desktop().keyboard().chord("BackSpace");
  desktop().keyboard().chord("BackSpace");
  page().waitUntilTrue("byId('area').value === ''");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTextTest, PastedTextBlocks) {
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

TEST_F(RestartGuardTextTest, TextThatEqualsWhatWasThereDoesNotCount) {
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

TEST_F(RestartGuardTextTest, BlanksAreNoText) {
  page().click("#area");
  page().waitUntilTrue("document.activeElement === byId('area')");
  typeUntil("  \n", "byId('area').value === '  \\n'");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardTextTest, TextThatThePagePutsInPlaceOfTheUsersDoesNotCount) {
  for (const char* editor : {"#area", "#rich"}) {
    type(editor, "typed");
    leave();
    page().evaluate("const editor = document.querySelector('" + std::string(editor) +
                    "'); editor[editor.id === 'area' ? 'value' : 'textContent'] = 'Another one'");
    EXPECT_EQ(ask(), Json()) << editor;
  }
}

TEST_F(RestartGuardTextTest, TextThatThePageOnlyReshapesIsStillTheUsers) {
  type("#area", "typed text");
  leave();
  page().evaluate("byId('area').value = '- Typed-Text! (10)'");
  EXPECT_EQ(ask(), Json(textReason));
}

TEST_F(RestartGuardTextTest, HiddenEditorCounts) {
  type("#area", "typed");
  page().evaluate("byId('area').style.display = 'none'");
  EXPECT_EQ(ask(), Json(textReason));
}

// The framework writes the value into the attribute at every key.
TEST_F(RestartGuardTextTest, FieldWhoseAttributeMirrorsItsValueCounts) {
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

TEST_F(RestartGuardTextTest, ResetClearsOnlyWhatItReplaces) {
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
TEST_F(RestartGuardTextTest, EditorThatCancelsItsEventsCountsAfterABlurAndAfterARequest) {
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
TEST_F(RestartGuardTextTest, EditorThatTakesEveryKeyOutOfItsFieldCounts) {
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

TEST_F(RestartGuardTextTest, FieldThatIsEmptiedByTheKeyThatSendsItDoesNotCount) {
  page().evaluate(
      "byId('line').addEventListener('keydown', (event) => { if (event.key === 'Enter') {"
      "  fetch('/__test/pages/plain.html', {method: 'POST', body: byId('line').value});"
      "  byId('line').value = ''; } })");
  type("#line", "typed");
  desktop().keyboard().chord("Return");
  page().waitUntilTrue("byId('line').value === ''");
  page().waitUntilTrue("NavoraUpdateGuard.prepare() === undefined");
}

TEST_F(RestartGuardTextTest, FailureToHandleAnEventCountsUntilTheFieldIsEmpty) {
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

}  // namespace
}  // namespace navora::driver
