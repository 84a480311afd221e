#include "pages/AppearanceRules.h"
#include "pages/PageTest.h"

namespace navora::driver {
namespace {

using testing::IsEmpty;

// The appearance script on pages of other designs and on hostile pages.
class EditorPagesTest : public PageTest {
 protected:
  void openEditor(const std::string& style = {}) {
    open("/__test/pages/editor.html");
    setStyle(style);
    listen();
  }

  void setStyle(const std::string& style) {
    page().evaluate("document.querySelector('#own').textContent = " + Json(style).dump());
  }

  Json appearanceOf(const std::string& style) {
    openEditor(style);
    runScript();
    const Json appearance = posted(1)[0];
    EXPECT_THAT(appearanceProblems(appearance), IsEmpty());
    return appearance;
  }

  int charactersOf(const std::string& text) {
    return page().evaluate("return [...new Intl.Segmenter().segment(" + Json(text).dump() +
                           ")].length");
  }
};

TEST_F(EditorPagesTest, EveryNotationBecomesOneThatTheApplicationAccepts) {
  const Json look = appearanceOf(R"(
    .capture-editor { background: color(srgb 1 0 0); border: 1px solid hsl(120 100% 25%); }
    #capture-input { color: oklch(0 0 0); caret-color: rgb(1 2 3 / 50%); }
    #capture-submit { background: rebeccapurple; color: color-mix(in srgb, white 50%, black); })");
  EXPECT_EQ(look["surface"], "#ff0000");
  EXPECT_EQ(look["surfaceEnd"], "#ff0000");
  EXPECT_EQ(look["border"], "#008000");
  EXPECT_EQ(look["ink"], "#000000");
  EXPECT_EQ(look["caret"], "rgba(1, 2, 3, 0.5)");
  EXPECT_EQ(look["button"], "#663399");
  EXPECT_EQ(look["buttonInk"], "#808080");
}

TEST_F(EditorPagesTest, LengthsAreKeptInTheirRanges) {
  const Json large = appearanceOf(R"(
    .capture-editor { border-radius: 400px; padding: 400px; }
    #capture-input { font-size: 400px; line-height: 2; })");
  EXPECT_EQ(large["radius"], 48);
  EXPECT_EQ(large["padding"], 48);
  EXPECT_EQ(large["fontSize"], 32);
  EXPECT_EQ(large["lineHeight"], 64);
  setStyle(
      ".capture-editor { border-radius: 0; padding: 1px } "
      "#capture-input { font: 5px/1 serif; padding: 2px }");
  const Json small = posted(2)[1];
  EXPECT_EQ(small["radius"], 0);
  EXPECT_EQ(small["padding"], 8);
  EXPECT_EQ(small["fontSize"], 10);
  EXPECT_EQ(small["lineHeight"], 10);
}

TEST_F(EditorPagesTest, NormalLineHeightIsMeasured) {
  const Json look = appearanceOf("#capture-input { font: 20px sans-serif; line-height: normal }");
  const double height = look["lineHeight"];
  EXPECT_GT(height, 20);
  EXPECT_LT(height, 32);
}

TEST_F(EditorPagesTest, FontIsOneOfThreeKinds) {
  const std::vector<std::pair<std::string, std::string>> kinds{
      {"Georgia, 'Times New Roman', serif", "serif"},
      {"ui-serif, sans-serif", "serif"},
      {"'JetBrains Mono', sans-serif", "mono"},
      {"ui-monospace, Menlo, monospace", "mono"},
      {"Inter, 'Helvetica Neue', sans-serif", "sans"},
      {"system-ui", "sans"},
      {"Unheard", "sans"}};
  openEditor();
  runScript();
  std::size_t count = posted(1).size();
  for (const auto& [family, kind] : kinds) {
    // The size makes the appearance differ for every kind.
    setStyle("#capture-input { font: " + std::to_string(10 + count) + "px " + family + " }");
    const Json look = posted(++count).back();
    EXPECT_EQ(look["font"], kind) << family;
  }
}

TEST_F(EditorPagesTest, StatesAreReadFromTheRules) {
  const Json look = appearanceOf(R"(
    :root { --line:
      #010203; color-scheme: light dark; }
    .capture-editor { border: 2px solid var(--line); }
    .capture-editor:focus-within, .other:focus { border-color: light-dark(#040506, #ffffff); }
    @media (max-width: 1px) { .capture-editor:focus-within { border-color: red !important; } }
    @media (min-width: 1px) { #capture-submit { background: #070809; } }
    #capture-submit:hover:not(:disabled) { background: var(--nothing, #0a0b0c); }
    #capture-submit:disabled { background: red; color: red; }
    #capture-input { color: #0d0e0f; }
    #capture-input:empty::before { content: attr(data-placeholder); color: #101112; })");
  EXPECT_EQ(look["border"], "#010203");
  EXPECT_EQ(look["focus"], "#040506");
  EXPECT_EQ(look["button"], "#070809");
  EXPECT_EQ(look["buttonHover"], "#0a0b0c");
  EXPECT_EQ(look["placeholderColor"], "#101112");
  EXPECT_EQ(look["ink"], "#0d0e0f");
  EXPECT_EQ(look["caret"], "#0d0e0f");
  page().evaluate(
      "document.querySelector('#capture-input').textContent = 'x';"
      "document.querySelector('#capture-submit').disabled = true;"
      "document.querySelector('#capture-input').focus()");
  EXPECT_EQ(settled().size(), 1U);
  EXPECT_EQ(posted(2)[1]["placeholderColor"], "#101112");
  EXPECT_EQ(posted(2)[1]["button"], "#070809");
}

TEST_F(EditorPagesTest, TranslucentCardIsBlendedWithItsBackground) {
  const Json look = appearanceOf(R"(
    body { background: #000000; }
    .capture-editor { background: linear-gradient(rgb(255 255 255 / 20%), transparent); })");
  EXPECT_EQ(look["surface"], "#333333");
  EXPECT_EQ(look["surfaceEnd"], "#000000");
}

TEST_F(EditorPagesTest, LongPlaceholderIsCutBetweenCharacters) {
  openEditor();
  const std::string family = "\U0001F469\u200D\U0001F469\u200D\U0001F467";
  std::string text;
  for (int count = 0; count < 201; ++count)
    text += family;
  page().evaluate("document.querySelector('#capture-input').dataset.placeholder = " +
                  Json(text).dump());
  runScript();
  const std::string cut = posted(1)[0]["placeholder"];
  EXPECT_EQ(charactersOf(cut), 200);
  EXPECT_EQ(cut + family, text);
}

TEST_F(EditorPagesTest, LateStyleSheetIsObserved) {
  openEditor("#capture-input { color: #000001 }");
  runScript();
  EXPECT_EQ(posted(1)[0]["ink"], "#000001");
  page().evaluate(
      "const link = document.createElement('link'); link.rel = 'stylesheet';"
      "link.href = 'data:text/css,%23capture-input { color: %23000002 }';"
      "document.head.append(link)");
  EXPECT_EQ(posted(2)[1]["ink"], "#000002");
  page().evaluate("document.querySelector('link').remove()");
  EXPECT_EQ(posted(3)[2]["ink"], "#000001");
}

TEST_F(EditorPagesTest, ColorsDuringATransitionAreNotReported) {
  openEditor(
      ".capture-editor { background: #000000; transition: background-color 0.3s } "
      ".bright .capture-editor { background: #ffffff }");
  runScript();
  EXPECT_EQ(posted(1)[0]["surface"], "#000000");
  page().evaluate("document.documentElement.className = 'bright'");
  EXPECT_EQ(posted(2)[1]["surface"], "#ffffff");
  EXPECT_EQ(settled().size(), 2U);
}

TEST_F(EditorPagesTest, EditorThatIsReplacedIsFollowed) {
  openEditor();
  runScript();
  posted(1);
  page().evaluate(
      "const old = document.querySelector('.capture-editor'); const made = old.cloneNode(true);"
      "made.style.borderRadius = '7px'; old.replaceWith(made)");
  EXPECT_EQ(posted(2)[1]["radius"], 7);
  page().evaluate("document.querySelector('.capture-editor').style.borderRadius = '8px'");
  EXPECT_EQ(posted(3)[2]["radius"], 8);
}

TEST_F(EditorPagesTest, RewrittenDocumentIsFollowedByOneScriptOnly) {
  openEditor("#capture-input { color: #000001 }");
  runScript();
  posted(1);
  page().evaluate(
      "const markup = document.documentElement.outerHTML.replace('#000001', '#000002')"
      ".replace(/<script.*?<.script>/, '');"
      "document.open(); document.write(markup); document.close()");
  runScript();
  EXPECT_EQ(posted(2)[1]["ink"], "#000002");
  page().evaluate("document.documentElement.dataset.theme = 'dark'");
  EXPECT_EQ(posted(3)[2]["theme"], "dark");
  EXPECT_EQ(settled().size(), 3U);
}

TEST_F(EditorPagesTest, HostilePageGetsNoErrorsAndNothingIsReported) {
  const std::vector<std::string> attacks{
      "window.getComputedStyle = () => { throw new Error('no') }",
      "window.matchMedia = () => null",
      "window.MutationObserver = undefined",
      "window.requestAnimationFrame = () => { throw new Error('no') }",
      "HTMLCanvasElement.prototype.getContext = () => { throw new Error('no') }",
      "Object.defineProperty(document, 'styleSheets', {get() { throw new Error('no') }})",
      "delete window.webkit",
      "window.webkit.messageHandlers.navoraCaptureAppearance.postMessage = () => { throw 1 }",
      "Intl.Segmenter = undefined",
      "Object.freeze(document.documentElement)"};
  for (const std::string& attack : attacks) {
    openEditor();
    page().evaluate(attack);
    EXPECT_NO_THROW(runScript()) << attack;
    page().evaluate(
        "document.documentElement.className = 'x';"
        "for (let count = 0; count < 3; ++count) await new Promise(nextFrame)");
    EXPECT_EQ(page().evaluate("return failures"), Json::array()) << attack;
    EXPECT_EQ(page().evaluate("return posted.length"), Json(0)) << attack;
  }
}

}  // namespace
}  // namespace navora::driver
