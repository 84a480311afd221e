#include "pages/RestartGuardTest.h"

namespace navora::driver {
namespace {

// Editors and requests in frames, and editors in shadow trees.
class RestartGuardFrameTest : public RestartGuardTest {};

TEST_F(RestartGuardFrameTest, EditorInAFrameCounts) {
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
TEST_F(RestartGuardFrameTest, EditableDocumentInAFrameCounts) {
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

TEST_F(RestartGuardFrameTest, FrameOfAReadyPageTakesNoInput) {
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

TEST_F(RestartGuardFrameTest, RequestOfAFrameIsWaitedFor) {
  page().evaluate(
      "const frame = document.createElement('iframe'); document.body.prepend(frame);"
      "frame.srcdoc = '<p>Frame</p>'; await new Promise((resume) => { frame.onload = resume; });"
      "window.view = frame.contentWindow");
  EXPECT_EQ(aroundRequest("return view.fetch(new URL(url, location.href), {method: 'POST'})"),
            blocks());
}

TEST_F(RestartGuardFrameTest, EditorInAShadowTreeCounts) {
  page().evaluate(
      "const shadow = byId('outer').attachShadow({mode: 'open'});"
      "const made = document.createElement('input'); shadow.append(made); made.focus()");
  typeUntil("in", "byId('outer').shadowRoot.firstChild.value === 'in'");
  EXPECT_EQ(ask(), Json(textReason));
  page().evaluate("byId('outer').shadowRoot.firstChild.value = ''");
  EXPECT_EQ(ask(), Json());
}

TEST_F(RestartGuardFrameTest, EditorInAClosedShadowTreeAsksForAReload) {
  page().evaluate(
      "window.inner = document.createElement('input');"
      "byId('outer').attachShadow({mode: 'closed'}).append(inner); inner.focus()");
  typeUntil("in", "inner.value === 'in'");
  EXPECT_EQ(ask(), Json(reloadReason));
  page().evaluate("byId('outer').remove()");
  EXPECT_EQ(ask(), Json(reloadReason));
}

}  // namespace
}  // namespace navora::driver
