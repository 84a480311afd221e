#include "pages/AppearanceRules.h"
#include "pages/PageTest.h"

namespace navora::driver {
namespace {

using testing::IsEmpty;

// The appearance script on pages that promise nothing but #capture-input.
class EditorCardTest : public PageTest {
 protected:
  // Loads an empty page and fills it before the script runs.
  void openMarkup(const std::string& body, const std::string& style = {}) {
    open("/__test/pages/editor.html");
    page().evaluate("document.body.innerHTML = " + Json(body).dump() +
                    "; document.querySelector('#own').textContent = " + Json(style).dump());
    listen();
  }

  void setStyle(const std::string& style) {
    page().evaluate("document.querySelector('#own').textContent = " + Json(style).dump());
  }

  Json appearanceOf(const std::string& body, const std::string& style = {}) {
    openMarkup(body, style);
    runScript();
    const Json appearance = posted(1)[0];
    EXPECT_THAT(appearanceProblems(appearance), IsEmpty());
    return appearance;
  }

  // The appearance of an editor in a card of the class "box".
  Json appearanceOfStyle(const std::string& style) { return appearanceOf(box, style); }

  static constexpr const char* box =
      "<div class='box'><div id='capture-input' contenteditable='true' data-placeholder='Write'>"
      "</div><button class='send'>Save</button></div>";
};

TEST_F(EditorCardTest, CardIsTheNearestOneWithTheButtonInIt) {
  const Json look = appearanceOf(R"(
    <div class="page"><div class="field"><p><span id="capture-input" contenteditable></span></p></div>
      <button>Save</button></div>)",
                                 R"(
    .page { border: 1px solid #010203; border-radius: 9px; padding: 11px; background: #fafbfc; }
    .field { border-bottom: 1px solid #999999; border-radius: 3px; }
    button { background: #0a0b0c; color: #0d0e0f; })");
  EXPECT_EQ(look["border"], "#010203");
  EXPECT_EQ(look["surface"], "#fafbfc");
  EXPECT_EQ(look["radius"], 9);
  EXPECT_EQ(look["padding"], 11);
  EXPECT_EQ(look["button"], "#0a0b0c");
  EXPECT_EQ(look["buttonInk"], "#0d0e0f");
}

TEST_F(EditorCardTest, CardOfAnotherEditorIsNotUsed) {
  const Json look = appearanceOf(R"(
    <div class="capture-editor" style="background: #111111"><p contenteditable></p><button>No</button></div>
    <div class="capture-editor" style="background: #fafbfc"><div id="capture-input" contenteditable></div>
      <button id="capture-submit">Save</button></div>)");
  EXPECT_EQ(look["surface"], "#fafbfc");
}

TEST_F(EditorCardTest, FieldWithAFillOfItsOwnIsTheCard) {
  const Json look = appearanceOf(
      "<section><textarea id='capture-input' placeholder='Say "
      "it'></textarea><button>Save</button></section>",
      R"(section { background: #303030; padding: 30px; }
         textarea { background: #fefefe; border: 2px solid #010203; border-radius: 5px; }
         textarea::placeholder { color: #0a0b0c; opacity: 1; })");
  EXPECT_EQ(look["surface"], "#fefefe");
  EXPECT_EQ(look["border"], "#010203");
  EXPECT_EQ(look["radius"], 5);
  EXPECT_EQ(look["dark"], false);
  EXPECT_EQ(look["placeholder"], "Say it");
  EXPECT_EQ(look["placeholderColor"], "#0a0b0c");
}

TEST_F(EditorCardTest, PageWithoutACardGivesItsBackground) {
  const Json look = appearanceOf(
      "<main><div id='capture-input' contenteditable></div><button>Save</button></main>",
      "body { background: #fafbfc; color: #0a0b0c }");
  EXPECT_EQ(look["surface"], "#fafbfc");
  EXPECT_EQ(look["ink"], "#0a0b0c");
  EXPECT_EQ(look["border"], "rgba(0, 0, 0, 0)");
}

TEST_F(EditorCardTest, ButtonIsTheOneThatSubmitsTheForm) {
  const std::string form = R"(
    <form class="box"><div><p id="capture-input" contenteditable></p>
      <button type="button" style="background: #111111">B</button></div>
      <button type="reset" style="background: #222222">Clear</button>
      <button style="background: #0a0b0c">Save</button></form>)";
  EXPECT_EQ(appearanceOf(form)["button"], "#0a0b0c");
}

TEST_F(EditorCardTest, ButtonIsTheLastOneNearTheEditorWithoutAForm) {
  const std::string tools = R"(
    <button style="background: #111111">Menu</button>
    <div class="box"><p id="capture-input" contenteditable></p><button>B</button>
      <span role="button" style="background: #0a0b0c">Save</span></div>
    <button style="background: #222222">Sign out</button>)";
  EXPECT_EQ(appearanceOf(tools)["button"], "#0a0b0c");
}

TEST_F(EditorCardTest, ButtonOfThePromisedNameIsTheOne) {
  const std::string named = R"(
    <form><p id="capture-input" contenteditable></p><button>Preview</button></form>
    <button id="capture-submit" style="background: #0a0b0c">Save</button>)";
  EXPECT_EQ(appearanceOf(named)["button"], "#0a0b0c");
}

TEST_F(EditorCardTest, EditorWithoutAButtonGivesOneThatCanBeSeen) {
  const Json look =
      appearanceOf("<div class='box'><p id='capture-input' contenteditable></p></div>",
                   ".box { background: #fafbfc; color: #0a0b0c }");
  EXPECT_EQ(look["button"], "#0a0b0c");
  EXPECT_EQ(look["buttonHover"], "#0a0b0c");
  EXPECT_EQ(look["buttonInk"], "#fafbfc");
}

TEST_F(EditorCardTest, UnfilledButtonWithInvisibleInkIsReplacedByOneThatCanBeSeen) {
  // Its fill is an image, whose colours are not known.
  const Json look = appearanceOfStyle(R"(
    .box { background: #ffffff; color: #0a0b0c; }
    .send { background: url("data:image/gif;base64,R0lGODlhAQABAAAAACw=") #00000000; color: #ffffff; })");
  EXPECT_EQ(look["button"], "#0a0b0c");
  EXPECT_EQ(look["buttonInk"], "#ffffff");
}

TEST_F(EditorCardTest, PageThatIsDarkByClassIsDarkAndNotOfTheSystem) {
  openMarkup(box, R"(
    .box { background: #ffffff; color: #101010; }
    .night .box { background: #101010; color: #fafafa; })");
  runScript();
  EXPECT_EQ(posted(1)[0]["dark"], false);
  EXPECT_EQ(posted(1)[0]["theme"], "light");
  page().evaluate("document.body.className = 'night'");
  EXPECT_EQ(posted(2)[1]["dark"], true);
  EXPECT_EQ(posted(2)[1]["theme"], "dark");
}

TEST_F(EditorCardTest, ThemeOfAnUnknownNameIsToldByItsColours) {
  openMarkup(box, ".box { background: #101010; color: #fafafa; }");
  page().evaluate("document.documentElement.dataset.theme = 'midnight'");
  runScript();
  EXPECT_EQ(posted(1)[0]["dark"], true);
  EXPECT_EQ(posted(1)[0]["theme"], "dark");
}

TEST_F(EditorCardTest, ColoursThatTellNothingLeaveTheWordToTheColourScheme) {
  openMarkup(box, ":root { color-scheme: dark } .box { background: #777777; color: #777777; }");
  runScript();
  EXPECT_EQ(posted(1)[0]["dark"], true);
  setStyle(":root { color-scheme: light } .box { background: #777777; color: #777777; }");
  EXPECT_EQ(posted(2)[1]["dark"], false);
}

TEST_F(EditorCardTest, UnpaintedPageHasTheGroundOfItsColourScheme) {
  openMarkup(box, ":root { color-scheme: dark }");
  runScript();
  EXPECT_EQ(posted(1)[0]["surface"], "#1e1e1e");
  EXPECT_EQ(posted(1)[0]["dark"], true);
}

TEST_F(EditorCardTest, DarkOfAPageWithoutAThemeFollowsTheDesktop) {
  openMarkup(box, R"(
    :root { color-scheme: light dark }
    .box { background: light-dark(#ffffff, #101010); color: light-dark(#101010, #fafafa); })");
  runScript();
  EXPECT_EQ(posted(1)[0]["dark"], false);
  switchColorScheme();
  EXPECT_EQ(posted(2)[1]["dark"], true);
  EXPECT_EQ(posted(2)[1]["surface"], "#101010");
}

TEST_F(EditorCardTest, GradientOfTheButtonBecomesItsMeanColour) {
  const Json look = appearanceOfStyle(R"(
    .send { background: linear-gradient(145deg, #000000, #204060); color: #ffffff; }
    .send:hover { background-image: linear-gradient(to right, #202020 10%, rgb(64 64 64) 90%); })");
  EXPECT_EQ(look["button"], "#102030");
  EXPECT_EQ(look["buttonHover"], "#303030");
  EXPECT_EQ(look["buttonInk"], "#ffffff");
}

TEST_F(EditorCardTest, GradientOfVariablesOverAColourIsComposited) {
  const Json look = appearanceOfStyle(R"(
    :root { --from: #ffffff; --fill: radial-gradient(circle at center, var(--from), var(--to, #000000)); }
    .send { background: var(--fill); }
    .send:hover { background: linear-gradient(rgb(0 0 0 / 50%), rgb(0 0 0 / 50%)), #ffffff; })");
  EXPECT_EQ(look["button"], "#808080");
  EXPECT_EQ(look["buttonHover"], "#808080");
}

TEST_F(EditorCardTest, ColourThatReplacesAGradientIsTheButtons) {
  const Json look = appearanceOfStyle(R"(
    .send { background: linear-gradient(#000000, #204060); }
    button.send { background: #0a0b0c; }
    .send:hover { background-color: #ff0000; })");
  EXPECT_EQ(look["button"], "#0a0b0c");
  EXPECT_EQ(look["buttonHover"], "#0a0b0c");
}

TEST_F(EditorCardTest, CardWithoutABorderGetsNone) {
  for (const std::string border : {"", "border: none", "border: 0", "border: 0 solid #ff0000",
                                   "border: 1px none #ff0000", "border: var(--none, none)"}) {
    const Json look = appearanceOfStyle(
        ".box { background: #fafbfc; color: #0a0b0c; box-shadow: 0 1px 9px #888888; " + border +
        " }");
    EXPECT_EQ(look["border"], "rgba(0, 0, 0, 0)") << border;
    EXPECT_EQ(look["focus"], "rgba(0, 0, 0, 0)") << border;
  }
}

TEST_F(EditorCardTest, BorderOfTheFocusedCardOnlyIsItsFocus) {
  openMarkup(box, R"(
    .box { background: #fafbfc; }
    .box:focus-within { border: var(--line, 1px solid rgb(1 2 3 / 100%)); })");
  page().evaluate("document.querySelector('#capture-input').focus()");
  runScript();
  EXPECT_EQ(posted(1)[0]["border"], "rgba(0, 0, 0, 0)");
  EXPECT_EQ(posted(1)[0]["focus"], "#010203");
}

TEST_F(EditorCardTest, RulesInLayersTakeTheOrderOfTheLayers) {
  const Json look = appearanceOfStyle(R"(
    @layer late, early, empty;
    @layer early { .box { border: 1px solid #010203; } .box:focus-within { border-color: #040506; }
      @layer inner { div.box:focus-within { border-color: #ff0000; } } }
    @layer late { body .box.box:focus-within { border-color: #ff0000; } }
    @layer { .send { background: #ff0000; } .send.send { color: #ff0000 !important; } }
    .send { background: #0a0b0c; color: #ff0000; }
    @layer late { .send { color: #0d0e0f !important; } .send:hover { background: #101112 !important; } })");
  EXPECT_EQ(look["border"], "#010203");
  EXPECT_EQ(look["focus"], "#040506");
  EXPECT_EQ(look["button"], "#0a0b0c");
  EXPECT_EQ(look["buttonHover"], "#101112");
  EXPECT_EQ(look["buttonInk"], "#0d0e0f");
}

TEST_F(EditorCardTest, NestedRulesAreRead) {
  const Json look = appearanceOfStyle(R"(
    .box, .other { border: 1px solid #010203; background: #fafbfc;
      &:focus-within { border-color: #040506; }
      .send { background: #0a0b0c; color: #0d0e0f;
        &:hover { background: #101112; }
        .other & { background: #ff0000; }
        @media (max-width: 1px) { &:hover { background: #ff0000; } }
        @media (min-width: 1px) { color: #131415; }
      }
      > p { color: #ff0000; }
      &:has(#capture-input) > #capture-input:empty::before { content: "x"; color: #161718; }
    })");
  EXPECT_EQ(look["border"], "#010203");
  EXPECT_EQ(look["focus"], "#040506");
  EXPECT_EQ(look["button"], "#0a0b0c");
  EXPECT_EQ(look["buttonHover"], "#101112");
  EXPECT_EQ(look["buttonInk"], "#131415");
  EXPECT_EQ(look["placeholderColor"], "#161718");
}

TEST_F(EditorCardTest, RulesOfUnmetConditionsAreLeftOut) {
  const Json look = appearanceOfStyle(R"(
    body { container: outer / inline-size; width: 700px; }
    .box { border: 1px solid #010203; }
    @supports (display: grid) and (not (display: unheard)) { .send { background: #0a0b0c; } }
    @supports (display: unheard) { .box:focus-within { border-color: #ff0000; } .send { background: #ff0000; } }
    @container (min-width: 600px) { .box:focus-within { border-color: #040506; } }
    @container (width > 800px) { .box:focus-within { border-color: #ff0000; } }
    @container outer (min-width: 600px) {
      @container not (max-width: 650px) { .send:hover { background: #101112; } }
      @container style(--no: yes) { .send:hover { background: #ff0000; } } }
    @container inner (min-width: 600px) { .send { color: #ff0000; } }
    @keyframes a { from { color: #ff0000; } })");
  EXPECT_EQ(look["border"], "#010203");
  EXPECT_EQ(look["focus"], "#040506");
  EXPECT_EQ(look["button"], "#0a0b0c");
  EXPECT_EQ(look["buttonHover"], "#101112");
  EXPECT_NE(look["buttonInk"], "#ff0000");
  EXPECT_EQ(page().evaluate("return document.adoptedStyleSheets.length"), Json(0));
}

TEST_F(EditorCardTest, ImportedRulesAreReadWithTheConditionsOfTheirImport) {
  openMarkup(box);
  page().evaluate(R"(
    const sheet = (text) => URL.createObjectURL(new Blob([text], {type: 'text/css'}));
    document.querySelector('#own').textContent = `
      @import url("${sheet('.send { background: #ff0000 } .box { border: 1px solid #010203 }')}") layer(base);
      @import url("${sheet('.send { background: #0a0b0c }')}") supports(display: grid);
      @import url("${sheet('.send.send { background: #ff0000 }')}") supports(display: unheard);
      @import url("${sheet('.send.send { background: #ff0000 }')}") (max-width: 1px);
      @layer base { .box:focus-within { border-color: #040506 } }`;
    await new Promise((done) => document.querySelector('#own').addEventListener('load', done)))");
  runScript();
  const Json look = posted(1)[0];
  EXPECT_EQ(look["border"], "#010203");
  EXPECT_EQ(look["focus"], "#040506");
  EXPECT_EQ(look["button"], "#0a0b0c");
}

TEST_F(EditorCardTest, SelectorsAreReadAsTheEngineDoes) {
  const Json look = appearanceOfStyle(R"(
    .box { border: 1px solid #010203; }
    .box:not(:hover, .other):focus-within { border-color: #040506; }
    :where(#capture-input ~ .send) { background: #ff0000; }
    button { background: #0a0b0c; }
    .hover\:red { background: #ff0000; }
    .box :is(.send, #none):enabled:hover { background: #101112; }
    .box .send.send:hover { background: #ff0000; })");
  EXPECT_EQ(look["focus"], "#040506");
  EXPECT_EQ(look["button"], "#0a0b0c");
  EXPECT_EQ(look["buttonHover"], "#101112");
}

TEST_F(EditorCardTest, NamesOfEveryKindAreRead) {
  openMarkup(box, R"(
    .box { border: 1px solid #ff0000; }
    .größe[title="1, 2"] { border-color: #010203; }
    .send { background: #0a0b0c; }
    .hover\:dim:hover { background: #101112; }
    .focus\:hover { background: #131415; })");
  page().evaluate(
      "document.querySelector('.box').classList.add('größe');"
      "document.querySelector('.box').title = '1, 2';"
      "document.querySelector('.send').classList.add('hover:dim')");
  runScript();
  EXPECT_EQ(posted(1)[0]["border"], "#010203");
  EXPECT_EQ(posted(1)[0]["button"], "#0a0b0c");
  EXPECT_EQ(posted(1)[0]["buttonHover"], "#101112");
}

TEST_F(EditorCardTest, StyleAttributeOutweighsTheRules) {
  openMarkup(box, ".box .send { background: #ff0000; } .send { color: #0d0e0f !important; }");
  page().evaluate(
      "document.querySelector('.send').style.cssText = 'background: #0a0b0c; color: #ff0000'");
  runScript();
  EXPECT_EQ(posted(1)[0]["button"], "#0a0b0c");
  EXPECT_EQ(posted(1)[0]["buttonInk"], "#0d0e0f");
}

TEST_F(EditorCardTest, InputThatIsReplacedWithinItsCardIsFollowed) {
  openMarkup(box);
  runScript();
  posted(1);
  page().evaluate(
      "const old = document.querySelector('#capture-input'); const made = old.cloneNode(true);"
      "made.dataset.placeholder = 'Neu'; old.replaceWith(made)");
  EXPECT_EQ(posted(2)[1]["placeholder"], "Neu");
  page().evaluate("document.querySelector('#capture-input').dataset.placeholder = 'Encore'");
  EXPECT_EQ(posted(3)[2]["placeholder"], "Encore");
}

TEST_F(EditorCardTest, ButtonThatIsReplacedOrAddedIsFollowed) {
  openMarkup(box, ".send { background: #0a0b0c } .later { background: #101112 }");
  runScript();
  EXPECT_EQ(posted(1)[0]["button"], "#0a0b0c");
  page().evaluate(
      "const made = document.createElement('button'); made.className = 'later';"
      "document.querySelector('.box').append(made)");
  EXPECT_EQ(posted(2)[1]["button"], "#101112");
  page().evaluate("document.querySelector('.later').style.background = '#131415'");
  EXPECT_EQ(posted(3)[2]["button"], "#131415");
  page().evaluate("document.querySelector('.later').remove()");
  EXPECT_EQ(posted(4)[3]["button"], "#0a0b0c");
}

TEST_F(EditorCardTest, InputThatMovesToAnotherCardIsFollowed) {
  openMarkup(std::string(box) + "<div class='box second'><button class='send'>Save</button></div>",
             ".box { border: 1px solid #010203 } .second { border-color: #040506 }");
  runScript();
  EXPECT_EQ(posted(1)[0]["border"], "#010203");
  page().evaluate(
      "document.querySelector('.second').prepend(document.querySelector('#capture-input'))");
  EXPECT_EQ(posted(2)[1]["border"], "#040506");
}

TEST_F(EditorCardTest, StyleSheetsAreReadAtMostOncePerFrame) {
  openMarkup(box, ".box { border: 1px solid #010203 }");
  page().evaluate(R"(
    const sheets = document.styleSheets;
    window.walks = 0;
    Object.defineProperty(document, 'styleSheets', {get() { ++walks; return sheets; }});)");
  runScript();
  posted(1);
  const Json walks = page().evaluate(R"(
    const walksOfFrames = [];
    for (let frame = 0; frame < 5; ++frame) {
      window.walks = 0;
      for (let count = 0; count < 10; ++count) window.dispatchEvent(new Event('resize'));
      document.body.className = `frame-${frame}`;
      document.querySelector('.send').style.order = frame;
      await new Promise(nextFrame);
      await new Promise(nextFrame);
      walksOfFrames.push(window.walks);
    }
    return walksOfFrames)");
  EXPECT_EQ(walks, Json({1, 1, 1, 1, 1}));
}

TEST_F(EditorCardTest, TransitionsThatKeepRestartingAreReportedAllTheSame) {
  openMarkup(box, R"(
    .box { background: #000000; transition: background-color 0.4s; }
    .bright .box { background: #ffffff; })");
  page().evaluate("setInterval(() => document.body.classList.toggle('bright'), 100)");
  page().waitUntilTrue("document.querySelector('.box').getAnimations().length > 0");
  runScript();
  posted(1);
}

TEST_F(EditorCardTest, TransitionsOfOtherPartsAreNotWaitedFor) {
  openMarkup(
      "<div class='box'><p id='capture-input' contenteditable></p><i>…</i><button></button></div>",
      "i { transition: opacity 1000s; } .on i { opacity: 0; }");
  page().evaluate("document.body.offsetWidth; document.querySelector('.box').classList.add('on')");
  page().waitUntilTrue("document.querySelector('i').getAnimations().length === 1");
  runScript();
  posted(1);
  EXPECT_EQ(page().evaluate("return document.querySelector('i').getAnimations().length"), Json(1));
}

TEST_F(EditorCardTest, TransitionOfThePageBehindTheCardIsWaitedFor) {
  openMarkup(box, R"(
    body { background: #000000; transition: background-color 0.3s; color: #777777 }
    body.bright { background: #ffffff; })");
  runScript();
  EXPECT_EQ(posted(1)[0]["surface"], "#000000");
  page().evaluate("document.body.className = 'bright'");
  EXPECT_EQ(posted(2)[1]["surface"], "#ffffff");
  EXPECT_EQ(settled().size(), 2U);
}

}  // namespace
}  // namespace navora::driver
