#include <set>

#include <gmock/gmock.h>

#include "pages/RestartGuardPage.h"

namespace navora::driver {
namespace {

// A page that was reported ready and must not change.
class RestartGuardFreezeTest : public RestartGuardPage {
 protected:
  void SetUp() override { open(fields); }

  // Returns an element's place on the screen; must be called before the page is frozen.
  Point place(const std::string& selector) { return page().rectangle(selector).center(); }

  void freeze() {
    ASSERT_EQ(prepare(), Json());
    page().evaluate("arrived.length = seen.length = 0");
  }

  // Waits until an event has reached the window and page handlers would have run.
  void waitForArrival(const std::string& type) {
    page().waitUntilTrue("arrived.includes('" + type + "')", type + " arrives");
    page().evaluate("await nextFrame(); await nextFrame()");
  }

  void expectNothingSeen() {
    EXPECT_EQ(page().evaluate("return seen"), Json::array());
    EXPECT_EQ(page().evaluate(state), before_);
  }

  void rememberState() { before_ = page().evaluate(state); }

  static constexpr const char* state =
      "return [...document.querySelectorAll('input, textarea, select')].map((each) => "
      "[each.value, each.checked, each.files?.length]).concat([byId('rich').innerHTML, "
      "location.href, scrollY])";
  Json before_;
};

TEST_F(RestartGuardFreezeTest, KeysDoNothing) {
  page().click("#area");
  page().waitUntilTrue("document.activeElement === byId('area')");
  rememberState();
  freeze();
  desktop().keyboard().type("a");
  waitForArrival("keyup");
  for (const char* keys :
       {"Return", "Tab", "Page_Down", "space", "Control+v", "Control+a", "Escape", "Shift+F10"}) {
    page().evaluate("arrived.length = 0");
    desktop().keyboard().chord(keys);
    waitForArrival("keyup");
  }
  expectNothingSeen();
  resume();
  typeUntil("b", "byId('area').value === 'b' && seen.includes('keydown')");
}

TEST_F(RestartGuardFreezeTest, InputMethodDoesNothing) {
  const auto compose = [this] {
    desktop().keyboard().chord("Control+Shift+u");
    desktop().keyboard().type("263a");
    desktop().keyboard().chord("space");
    desktop().keyboard().type("z");
  };
  page().click("#area");
  page().waitUntilTrue("document.activeElement === byId('area')");
  rememberState();
  freeze();
  compose();
  page().waitUntilTrue("window.lastKeyUp === 'KeyZ'");
  page().evaluate("await nextFrame(); await nextFrame()");
  expectNothingSeen();
  EXPECT_EQ(page().evaluate("return arrived.includes('compositionstart')"), Json(false));
  resume();
  compose();
  page().waitUntilTrue("byId('area').value === '\u263az'", "the composed character is there");
  EXPECT_EQ(page().evaluate("return arrived.includes('compositionstart')"), Json(true));
}

TEST_F(RestartGuardFreezeTest, PointerDoesNothing) {
  const Point check = place("#check");
  const Point area = place("#area");
  const Point send = place("#send");
  rememberState();
  freeze();
  desktop().mouse().click(check);
  waitForArrival("click");
  desktop().mouse().doubleClick(area);
  waitForArrival("dblclick");
  desktop().mouse().click(area, MouseButton::middle);
  waitForArrival("auxclick");
  desktop().mouse().click(send);
  page().waitUntilTrue("arrived.filter((type) => type === 'click').length >= 4");
  expectNothingSeen();
  desktop().keyboard().type("x");
  waitForArrival("keyup");
  expectNothingSeen();
  resume();
  desktop().mouse().click(check);
  page().waitUntilTrue("byId('check').checked && seen.includes('click')");
}

TEST_F(RestartGuardFreezeTest, WheelDoesNothing) {
  const Point area = place("#rich");
  page().evaluate("scrollTo(0, 100); await nextFrame(); await nextFrame()");
  rememberState();
  freeze();
  for (const int notches : {3, -9}) {
    page().evaluate("arrived.length = 0");
    desktop().mouse().scroll(area, notches);
    waitForArrival("wheel");
    expectNothingSeen();
  }
  resume();
  desktop().mouse().scroll(area, 3);
  page().waitUntilTrue("scrollY > 100 && seen.includes('wheel')");
}

TEST_F(RestartGuardFreezeTest, ContextMenuDoesNotOpen) {
  const Point area = place("#area");
  // Toolkits create hidden windows at any time, and windows of earlier tests may still vanish.
  const auto visibleWindows = [] {
    std::set<WindowId> windows;
    for (const auto& window :
         desktop().display().windows([](const auto& each) { return each.mapped; }))
      windows.insert(window.id);
    return windows;
  };
  const auto windows = visibleWindows();
  rememberState();
  freeze();
  desktop().mouse().click(area, MouseButton::right);
  waitForArrival("contextmenu");
  expectNothingSeen();
  EXPECT_THAT(windows, testing::IsSupersetOf(visibleWindows()));
  resume();
  desktop().mouse().click(area, MouseButton::right);
  page().waitUntilTrue("seen.includes('contextmenu')");
  desktop().keyboard().chord("Escape");
}

TEST_F(RestartGuardFreezeTest, PasteDoesNothing) {
  type("#line", "copied");
  desktop().keyboard().chord("Control+a");
  desktop().keyboard().chord("Control+x");
  page().waitUntilTrue("byId('line').value === ''");
  rememberState();
  freeze();
  desktop().keyboard().chord("Control+v");
  waitForArrival("keyup");
  expectNothingSeen();
  resume();
  desktop().keyboard().chord("Control+v");
  page().waitUntilTrue("byId('line').value === 'copied'");
}

// A drag that has begun continues under the control of the display server.
TEST_F(RestartGuardFreezeTest, DropDoesNothing) {
  page().evaluate(
      "byId('outer').textContent = 'Dragged'; byId('outer').style.font = '30px sans-serif'");
  const Point middle = place("#outer");
  const Point word{middle.x - 100, middle.y};
  const Point area = place("#area");
  // The drag begins asynchronously and follows the pointer only from then on.
  const auto moveUntil = [this](Point to, const std::string& type) {
    int step = 0;
    waitUntil(
        [&] {
          desktop().mouse().moveTo({to.x + step++ % 15, to.y});
          return page().evaluate("return arrived.includes('" + type + "')") == Json(true);
        },
        type + " arrives");
  };
  const auto beginDrag = [&] {
    page().evaluate("arrived.length = 0; getSelection().selectAllChildren(byId('outer'))");
    desktop().mouse().moveTo(word);
    desktop().mouse().press();
    moveUntil({word.x + 20, word.y + 5}, "dragstart");
  };
  beginDrag();
  rememberState();
  freeze();
  moveUntil(area, "dragover");
  page().evaluate("arrived.length = 0");
  desktop().mouse().release();
  moveUntil(area, "mousemove");
  expectNothingSeen();
  EXPECT_EQ(page().evaluate("return arrived.includes('drop')"), Json(false));
  resume();
  beginDrag();
  moveUntil(area, "dragover");
  desktop().mouse().release();
  page().waitUntilTrue("byId('area').value === 'Dragged' && seen.includes('drop')");
}

TEST_F(RestartGuardFreezeTest, FocusThatThePageSetsDoesNotHelp) {
  rememberState();
  freeze();
  for (const char* editor : {"area", "line", "rich", "menu"}) {
    page().evaluate("arrived.length = 0; byId('" + std::string(editor) + "').focus()");
    desktop().keyboard().type("t");
    waitForArrival("keyup");
    EXPECT_EQ(page().evaluate("return document.activeElement.id"), Json("")) << editor;
  }
  expectNothingSeen();
}

TEST_F(RestartGuardFreezeTest, DialogThatThePageOpensMeanwhileDoesNotHelp) {
  freeze();
  page().evaluate(
      "const dialog = document.createElement('dialog'); document.body.append(dialog);"
      "window.inner = dialog.appendChild(document.createElement('input'));"
      "dialog.showModal(); inner.focus()");
  desktop().keyboard().type("t");
  waitForArrival("keyup");
  EXPECT_EQ(page().evaluate("return inner.value"), Json(""));
  EXPECT_EQ(page().evaluate("return document.activeElement === inner"), Json(false));
  EXPECT_EQ(page().evaluate("return seen"), Json::array());
}

TEST_F(RestartGuardFreezeTest, PageThatRemovesTheCoverIsStillClosed) {
  page().click("#area");
  page().waitUntilTrue("document.activeElement === byId('area')");
  const Point check = place("#check");
  rememberState();
  freeze();
  page().evaluate("document.documentElement.lastElementChild.remove(); byId('area').focus()");
  desktop().keyboard().type("t");
  waitForArrival("keyup");
  desktop().mouse().click(check);
  waitForArrival("click");
  expectNothingSeen();
  resume();
  desktop().mouse().click(check);
  page().waitUntilTrue("byId('check').checked");
}

TEST_F(RestartGuardFreezeTest, SubmitOfThePageDoesNothing) {
  rememberState();
  freeze();
  page().evaluate("byId('form').requestSubmit()");
  waitForArrival("submit");
  expectNothingSeen();
}

TEST_F(RestartGuardFreezeTest, FocusAndCaretAreRestored) {
  page().evaluate("byId('filled').focus(); byId('filled').setSelectionRange(6, 6)");
  freeze();
  resume();
  typeUntil("-", "byId('filled').value === 'Filled- by the page'");
  EXPECT_EQ(page().evaluate("return seen.filter((type) => type.startsWith('focus'))"),
            Json::array());
  page().evaluate(
      "byId('filled').value = byId('filled').defaultValue; byId('rich').textContent = 'Rich';"
      "byId('rich').focus(); getSelection().collapse(byId('rich').firstChild, 2)");
  freeze();
  resume();
  typeUntil("-", "byId('rich').textContent === 'Ri-ch'");
  page().evaluate(
      "byId('rich').textContent = ''; byId('outer').textContent = 'Chosen';"
      "document.activeElement.blur(); getSelection().selectAllChildren(byId('outer'))");
  freeze();
  resume();
  EXPECT_EQ(page().evaluate("return getSelection().toString()"), Json("Chosen"));
}

TEST_F(RestartGuardFreezeTest, AppearanceDoesNotChange) {
  page().evaluate("scrollTo(0, 150); await nextFrame(); await nextFrame()");
  desktop().mouse().moveTo({0, 0});
  const auto look = [this] {
    page().evaluate("await nextFrame(); await nextFrame()");
    return desktop().display().screenshot();
  };
  // Repainting can change the antialiasing of a letter's edge.
  constexpr int shade = 48;
  const Screenshot before = look();
  ASSERT_FALSE(before.blank());
  freeze();
  EXPECT_EQ(look().differingPixels(before, shade), 0U);
  resume();
  EXPECT_EQ(look().differingPixels(before, shade), 0U);
  EXPECT_EQ(page().evaluate("return document.documentElement.lastElementChild.localName"),
            Json("body"));
}

TEST_F(RestartGuardFreezeTest, PreparingTwiceAndResumingAtAnyTimeIsHarmless) {
  resume();
  type("#area", "x");
  page().evaluate("byId('area').value = ''");
  freeze();
  EXPECT_EQ(prepare(), Json());
  resume();
  resume();
  typeUntil("y", "byId('area').value === 'y'");
  expectNoFailures();
}

TEST_F(RestartGuardFreezeTest, NewReasonUnfreezesThePage) {
  freeze();
  EXPECT_EQ(page().evaluate("const end = fetch('/__test/pages/plain.html', {method: 'POST'});"
                            "const answer = NavoraUpdateGuard.prepare(); await end; return answer"),
            Json(requestReason));
  type("#area", "x");
}

TEST_F(RestartGuardFreezeTest, PageScriptsKeepRunning) {
  freeze();
  EXPECT_EQ(page().evaluate("byId('line').value = 'Of the page'; byId('loose').click();"
                            "return (await fetch('/__test/pages/plain.html')).status"),
            Json(200));
  EXPECT_EQ(page().evaluate("return byId('line').value"), Json("Of the page"));
}

}  // namespace
}  // namespace navora::driver
