#include "pages/RestartGuardPage.h"

namespace navora::driver {
namespace {

struct KnownEditor {
  const char* name;
  const char* script;  // among the test pages, without its extension
};

std::ostream& operator<<(std::ostream& stream, const KnownEditor& editor) {
  return stream << editor.name;
}

// The guard and the editors that people use: each brings its own ways to receive keys, to show its
// text and to replace it.
class KnownEditorsTest : public RestartGuardPage, public testing::WithParamInterface<KnownEditor> {
 protected:
  void SetUp() override {
    open("/__test/pages/known-editor.html?editor=" + std::string(GetParam().name) +
         "&script=" + GetParam().script);
    page().evaluate("window.place = 'plain.html'");
  }

  // Types at the end of the editor with real keys, and waits until the editor has the text.
  void write(const std::string& text, const std::string& whole) {
    page().evaluate("focusEnd(); await nextFrame(); await nextFrame()");
    typeUntil(text, "editor.text() === " + Json(whole).dump());
  }
  void setText(const std::string& text) {
    page().evaluate("editor.setText(" + Json(text).dump() +
                    "); await nextFrame(); await nextFrame()");
  }
  // Sends a text by the button, and waits until the page has the answer.
  void send(const std::string& place = "plain.html") {
    page().evaluate("window.place = " + Json(place).dump() + "; window.sent = null");
    page().click("#send");
    page().waitUntilTrue("window.sent !== null && NavoraUpdateGuard.prepare() !== " +
                         Json(requestReason).dump());
    resume();
  }
  void expectUnsent(const char* when) { EXPECT_NE(ask(), Json()) << when; }
  void expectReady(const char* when) { EXPECT_EQ(ask(), Json()) << when; }
};

TEST_P(KnownEditorsTest, KeepsTheApplicationRunningWhileItsTextIsUnsent) {
  expectReady("untouched");
  write("hello wor", "hello wor");
  EXPECT_EQ(ask(), Json(textReason)) << "typed";
  page().evaluate("await post('hello')");
  expectUnsent("half of it sent");
  write("ld", "hello world");
  page().evaluate("await post('hello wor')");
  expectUnsent("sent before the last keys");
  page().evaluate("await post(editor.text())");
  expectUnsent("sent elsewhere, as to a spelling check");
  leave();
  expectUnsent("left, after it was sent elsewhere");
  send("absent");
  expectUnsent("refused by the service");
  send();
  expectReady("sent");
  write("!", "hello world!");
  expectUnsent("changed after it was sent");
  leave();
  setText("");
  expectReady("emptied by the page");
  write("again", "again");
  expectUnsent("typed again");
  setText("");
  expectReady("emptied again");
  setText("again");
  expectUnsent("restored by the page");
  page().evaluate("focusEnd(); await nextFrame(); await nextFrame()");
  desktop().keyboard().chord("Control+a");
  desktop().keyboard().chord("BackSpace");
  page().waitUntilTrue("editor.text() === ''");
  expectReady("deleted by the user");
  expectNoFailures();
}

TEST_P(KnownEditorsTest, KeepsTheApplicationRunningAfterAPasteAlone) {
  page().evaluate(
      "const area = document.createElement('textarea'); area.id = 'area'; area.value = 'pasted';"
      "byId('elsewhere').after(area)");
  page().click("#area");
  page().waitUntilTrue("document.activeElement === byId('area')");
  desktop().keyboard().chord("Control+a");
  desktop().keyboard().chord("Control+c");
  page().waitUntilTrue("seen.includes('copy')");
  page().evaluate("focusEnd(); await nextFrame(); await nextFrame()");
  desktop().keyboard().chord("Control+v");
  page().waitUntilTrue("editor.text().includes('pasted')");
  EXPECT_EQ(ask(), Json(textReason));
  send();
  expectReady("sent");
}

INSTANTIATE_TEST_SUITE_P(Editors, KnownEditorsTest,
                         testing::Values(KnownEditor{"react-input", "editors/react"},
                                         KnownEditor{"react-textarea", "editors/react"},
                                         KnownEditor{"prosemirror", "editors/prosemirror"},
                                         KnownEditor{"codemirror", "editors/codemirror"},
                                         KnownEditor{"quill", "editors/quill"},
                                         KnownEditor{"lexical", "editors/lexical"},
                                         KnownEditor{"self-made", "self-made"}),
                         [](const auto& instance) {
                           std::string name = instance.param.name;
                           std::erase(name, '-');
                           return name;
                         });

}  // namespace
}  // namespace navora::driver
