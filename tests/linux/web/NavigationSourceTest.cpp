#include <ostream>
#include <string>

#include <gtest/gtest.h>
#include <gtkmm/window.h>

#include "linux/support/TestDesktop.h"
#include "linux/support/Widgets.h"
#include "linux/web/WebViewTest.h"

namespace navora {
namespace {

constexpr const char* foreignAddress = "https://remote.example/page";

// Determines which frame the engine's questions come from.
class NavigationSourceTest : public WebViewTest {
 protected:
  // Loads a page with a link, a form, a shadow root of each kind and a frame. Loads of other
  // origins are cancelled.
  testing::AssertionResult loadSourcePage() {
    navigation_.decide = [origin = server_.origin()](const NavigationAction& action) {
      return action.url && action.url->string().starts_with(origin) ? NavigationPolicy::allow
                                                                    : NavigationPolicy::cancel;
    };
    server_.serveHtml("/frame", "<a id=link href=" + std::string(foreignAddress) + "></a>");
    return loadHtml(R"(
      <script>
        const address = ')" +
                    std::string(foreignAddress) + R"(';
        const make = (name, attributes) => {
          const element = document.createElement(name);
          for (const key in attributes) element.setAttribute(key, attributes[key]);
          return element;
        };
        const detached = (attributes) => make('a', {href: address, ...attributes});
        const inShadow = (mode, element) => {
          const host = document.body.appendChild(make('div'));
          host.attachShadow({mode}).append(element);
          return element;
        };
        // Acts a few turns of the event loop later.
        const later = (action, turns = 5) => {
          const {port1, port2} = new MessageChannel();
          port1.onmessage = () => turns === 0 ? action() : later(action, turns - 1);
          port2.postMessage(null);
        };
        const synthetic = (init) => new MouseEvent('click', {cancelable: true, ...init});
      </script>
      <a id=link href=')" +
                    std::string(foreignAddress) +
                    R"('><b id=inner>link</b></a>
      <a id=own href='/own'>own</a>
      <svg><a id=drawn xmlns:xlink='http://www.w3.org/1999/xlink'
        xlink:href=')" +
                    std::string(foreignAddress) + R"('><text y=20>drawn</text></a></svg>
      <form id=form method=post target=_blank action=')" +
                    std::string(foreignAddress) +
                    R"('><button id=send></button></form>
      <iframe src=/frame></iframe>)");
  }

  const NavigationAction* foreignAction() const {
    return navigation_.actionTo(testUrl(foreignAddress));
  }
  // Waits for the engine's question about the foreign address.
  const NavigationAction* waitForForeignAction() {
    EXPECT_TRUE(waitUntil([this] { return foreignAction() != nullptr; }));
    return foreignAction();
  }
  FrameInfo topFrame() const { return {true, testUrl(server_.url("/page"))}; }

  // Presents the view in a window that has the keyboard.
  void show() {
    window_.set_default_size(600, 400);
    gtk_container_add(GTK_CONTAINER(window_.gobj()), view_->widget());
    gtk_widget_show(view_->widget());
    window_.present();
    ASSERT_TRUE(waitUntil([this] { return isReadyForKeys(window_); }));
  }
  void clickIntoWindow() { TestDesktop::current().mouse().click(infoOf(window_).content.center()); }

  Gtk::Window window_;
};

struct PageScript {
  const char* name;
  const char* script;
};

void PrintTo(const PageScript& script, std::ostream* stream) {
  *stream << script.name;
}

std::string nameOf(const testing::TestParamInfo<PageScript>& info) {
  return info.param.name;
}

class LinkSourceTest : public NavigationSourceTest,
                       public testing::WithParamInterface<PageScript> {};

TEST_P(LinkSourceTest, ComesFromTheTopFrame) {
  ASSERT_TRUE(loadSourcePage());
  run(GetParam().script);
  const NavigationAction* action = waitForForeignAction();
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->sourceFrame, topFrame());
  EXPECT_EQ(action->type, NavigationType::linkActivated);
}

INSTANTIATE_TEST_SUITE_P(
    OfThePage, LinkSourceTest,
    testing::Values(
        PageScript{"Link", "link.click()"}, PageScript{"NestedElement", "inner.click()"},
        PageScript{"SyntheticClick", "link.dispatchEvent(synthetic({bubbles: true}))"},
        PageScript{"SyntheticClickThatDoesNotBubble", "link.dispatchEvent(synthetic())"},
        PageScript{"Detached", "detached().click()"},
        PageScript{"DetachedForANewWindow", "detached({target: '_blank'}).click()"},
        PageScript{"DetachedNested",
                   "const outer = detached(); const child = make('b'); outer.append(child); "
                   "child.click()"},
        PageScript{"DetachedSyntheticClick", "detached().dispatchEvent(synthetic())"},
        PageScript{"DetachedDrawing",
                   "const drawing = drawn.cloneNode(true); "
                   "drawing.dispatchEvent(synthetic({bubbles: true}))"},
        PageScript{"Drawing", "drawn.dispatchEvent(synthetic({bubbles: true}))"},
        PageScript{"OpenShadowRoot", "inShadow('open', detached()).click()"},
        PageScript{"ClosedShadowRoot", "inShadow('closed', detached()).click()"},
        PageScript{"ClosedShadowRootSyntheticClick",
                   "inShadow('closed', detached()).dispatchEvent(synthetic({bubbles: true}))"},
        PageScript{"HrefChangedByItsHandler",
                   "own.addEventListener('click', () => { own.href = address; }); own.click()"},
        PageScript{"HrefChangedByAHandlerOfTheDocument",
                   "document.addEventListener('click', () => { own.href = address; }); "
                   "own.click()"},
        PageScript{"HrefChangedByAHandlerOfTheWindow",
                   "window.addEventListener('click', () => { own.href = address; }); "
                   "own.click()"},
        PageScript{"HrefChangedByAHandlerThatStopsTheEvent",
                   "own.addEventListener('click', (event) => { own.href = address; "
                   "event.stopPropagation(); }); own.click()"},
        PageScript{"HrefOfADetachedLinkChangedByItsHandler",
                   "const changing = detached({href: '/own'}); "
                   "changing.onclick = () => { changing.href = address; }; changing.click()"},
        PageScript{"AfterAHandlerThatTakesLong",
                   "link.onclick = () => { for (const end = Date.now() + 1100; Date.now() < end;); "
                   "}; link.click()"},
        PageScript{"AfterDocumentOpen",
                   "document.open(); document.write('<p>new</p>'); document.close(); "
                   "detached().click()"}),
    nameOf);

class OpenerSourceTest : public NavigationSourceTest,
                         public testing::WithParamInterface<PageScript> {};

TEST_P(OpenerSourceTest, ComesFromTheTopFrame) {
  ASSERT_TRUE(loadSourcePage());
  run(GetParam().script);
  const NavigationAction* action = waitForForeignAction();
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->sourceFrame, topFrame());
  EXPECT_EQ(action->targetFrame, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    OfThePage, OpenerSourceTest,
    testing::Values(
        PageScript{"WindowOpen", "window.open(address)"},
        PageScript{"DocumentOpen", "document.open(address, '_blank', '')"},
        PageScript{"SubmitButton", "send.click()"}, PageScript{"Submit", "form.submit()"},
        PageScript{"RequestSubmit", "form.requestSubmit()"},
        PageScript{"SubmitOfAFormWithAControlNamedAction",
                   "form.append(make('input', {name: 'action'})); form.submit()"},
        PageScript{"ButtonOfAFormWithAControlNamedAction",
                   "form.append(make('input', {name: 'action'})); send.click()"},
        PageScript{"ButtonOfAFormWithControlsNamedMethodAndTarget",
                   "form.append(make('input', {name: 'method'}), make('input', {name: 'target'}));"
                   "send.click()"},
        PageScript{"SubmitOfAFormWithAControlNamedSubmit",
                   "form.append(make('input', {name: 'submit'})); "
                   "HTMLFormElement.prototype.submit.call(form)"},
        PageScript{"RequestSubmitInAnOpenShadowRoot", "inShadow('open', form).requestSubmit()"},
        PageScript{"RequestSubmitInAClosedShadowRoot", "inShadow('closed', form).requestSubmit()"},
        PageScript{"ButtonInAClosedShadowRoot",
                   "const button = send; inShadow('closed', form); button.click()"}),
    nameOf);

// What a page may replace, apart from the functions that the test itself calls.
constexpr const char* replacedBuiltIns = R"(
  const fail = () => { throw new Error('replaced'); };
  for (const name of ['matches', 'hasAttribute', 'getAttribute']) Element.prototype[name] = fail;
  for (const name of ['getRootNode', 'contains']) Node.prototype[name] = fail;
  for (const [owner, name] of [[Node, 'isConnected'], [Node, 'baseURI'], [Event, 'type'],
       [UIEvent, 'view'], [MouseEvent, 'relatedTarget'], [HTMLAnchorElement, 'href'],
       [HTMLFormElement, 'action'], [URL, 'href'], [HTMLInputElement, 'multiple']]) {
    Object.defineProperty(owner.prototype, name, {get: fail});
  }
  JSON.stringify = Reflect.apply = fail;
  String.prototype.toJSON = Object.prototype.toJSON = () => 'replaced';
  for (const name of ['view', 'bubbles', 'relatedTarget', 'detail', 'get', 'value']) {
    Object.defineProperty(Object.prototype, name, {__proto__: null, get: fail});
  }
  Event.prototype.composedPath = Array.prototype.find = Array.prototype.push = fail;
  Array.prototype[Symbol.iterator] = Function.prototype.call = Function.prototype.apply = fail;
  Object.getOwnPropertyDescriptor = Object.defineProperty = fail;
  window.MouseEvent = window.CustomEvent = window.Event = window.URL = window.setTimeout = fail;
)";

class SabotagedSourceTest : public NavigationSourceTest,
                            public testing::WithParamInterface<PageScript> {};

TEST_P(SabotagedSourceTest, ReportsTheTopFrameAllTheSame) {
  ASSERT_TRUE(loadSourcePage());
  run(std::string("const closed = inShadow('closed', detached()); const loose = detached(); ") +
      replacedBuiltIns + GetParam().script);
  const NavigationAction* action = waitForForeignAction();
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->sourceFrame, topFrame());
}

INSTANTIATE_TEST_SUITE_P(
    OfThePage, SabotagedSourceTest,
    testing::Values(PageScript{"Link", "link.click()"}, PageScript{"Detached", "loose.click()"},
                    PageScript{"ClosedShadowRoot", "closed.click()"},
                    PageScript{"WindowOpen", "window.open(address)"},
                    PageScript{"DocumentOpen", "document.open(address, '_blank', '')"},
                    PageScript{"Submit", "form.submit()"}),
    nameOf);

TEST_F(NavigationSourceTest, AClickInAClosedShadowRootComesFromTheTopFrame) {
  ASSERT_TRUE(loadSourcePage());
  run("const full = detached({style: 'position: fixed; inset: 0; background: silver'});"
      "full.append('link'); inShadow('closed', full)");
  show();
  clickIntoWindow();
  const NavigationAction* action = waitForForeignAction();
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->sourceFrame, topFrame());
  EXPECT_EQ(action->type, NavigationType::linkActivated);
}

TEST_F(NavigationSourceTest, AClickOnALinkThatItsHandlerChangesComesFromTheTopFrame) {
  ASSERT_TRUE(loadSourcePage());
  run("own.style = 'position: fixed; inset: 0; background: silver';"
      "own.addEventListener('mousedown', () => {});"
      "own.onclick = (event) => { own.href = address; event.stopPropagation(); }");
  show();
  clickIntoWindow();
  const NavigationAction* action = waitForForeignAction();
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->sourceFrame, topFrame());
}

// The response of a service worker has an address of its own.
TEST_F(NavigationSourceTest, AResponseHasItsOwnAddress) {
  server_.serve("/worker.js", {.body = "onactivate = (event) => event.waitUntil(clients.claim());"
                                       "onfetch = (event) => { if (event.request.url.endsWith("
                                       "'/asked')) event.respondWith(fetch('/answered')); }",
                               .contentType = "text/javascript"});
  server_.serveHtml("/answered", "<title>Answered</title>");
  ASSERT_TRUE(loadHtml(""));
  run("navigator.serviceWorker.register('/worker.js'); navigator.serviceWorker.ready.then("
      "() => { document.title = 'ready'; })");
  ASSERT_TRUE(waitUntil([this] { return evaluate("document.title") == "ready"; }));
  ASSERT_TRUE(waitUntil([this] { return evaluate("!!navigator.serviceWorker.controller"); }));
  ASSERT_TRUE(load("/asked"));
  ASSERT_EQ(evaluate("document.title"), "Answered");
  EXPECT_EQ(navigation_.responses.back().url, testUrl(server_.url("/answered")));
  evaluate(
      "navigator.serviceWorker.getRegistrations().then((all) => "
      "all.forEach((one) => one.unregister())); null");
}

// What the page reports and then prevents must not vouch for what another frame does next.
class LeftOverSourceTest : public NavigationSourceTest,
                           public testing::WithParamInterface<PageScript> {};

TEST_P(LeftOverSourceTest, LendsItsTrustToNoOtherFrame) {
  ASSERT_TRUE(loadSourcePage());
  run(std::string("addEventListener('click', (event) => event.preventDefault());"
                  "addEventListener('submit', (event) => event.preventDefault());") +
      GetParam().script);
  run("later(() => frames[0].eval(`"
      "  const loose = document.createElement('a');"
      "  loose.href = document.querySelector('#link').href; loose.target = '_top'; loose.click();"
      "`))");
  const NavigationAction* action = waitForForeignAction();
  ASSERT_NE(action, nullptr);
  EXPECT_FALSE(action->sourceFrame.isMainFrame);
}

INSTANTIATE_TEST_SUITE_P(
    OfThePage, LeftOverSourceTest,
    testing::Values(PageScript{"Link", "link.click()"}, PageScript{"Form", "send.click()"},
                    PageScript{"Detached",
                               "const loose = detached(); "
                               "loose.onclick = (event) => event.preventDefault(); loose.click()"},
                    PageScript{"LinkOfAPageThatClearsItsTimers",
                               "link.click(); for (let id = setTimeout(() => {}); id > 0; --id) "
                               "clearTimeout(id)"},
                    PageScript{
                        "ContextMenu",
                        "link.dispatchEvent(new MouseEvent('contextmenu', {bubbles: true}))"}),
    nameOf);

TEST_F(NavigationSourceTest, AContextMenuThatOpenedNothingIsNoClick) {
  ASSERT_TRUE(loadSourcePage());
  run("link.dispatchEvent(new MouseEvent('contextmenu', {bubbles: true}))");
  run("location.href = address");
  const NavigationAction* action = waitForForeignAction();
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->type, NavigationType::other);
  EXPECT_FALSE(action->sourceFrame.isMainFrame);
}

TEST_F(NavigationSourceTest, ADetachedLinkOfAnotherFrameNamesNoFrame) {
  ASSERT_TRUE(loadSourcePage());
  run("frames[0].eval(`const loose = document.createElement('a'); "
      "loose.href = document.querySelector('#link').href; loose.target = '_top'; loose.click()`)");
  const NavigationAction* action = waitForForeignAction();
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->sourceFrame, FrameInfo{});
}

// File choosers need a user activation, which an evaluated script has.
class ChooserSourceTest : public NavigationSourceTest,
                          public testing::WithParamInterface<PageScript> {};

TEST_P(ChooserSourceTest, ComesFromTheTopFrame) {
  ASSERT_TRUE(loadSourcePage());
  run(std::string("const input = make('input', {type: 'file', multiple: ''}); ") +
      GetParam().script);
  ASSERT_TRUE(waitUntil([this] { return !dialogs_.shown.empty(); }));
  EXPECT_EQ(dialogs_.shown[0].kind, "files");
  EXPECT_EQ(dialogs_.shown[0].frame, topFrame());
  EXPECT_TRUE(dialogs_.lastParameters.allowsMultipleSelection);
  EXPECT_FALSE(dialogs_.lastParameters.allowsDirectories);
}

INSTANTIATE_TEST_SUITE_P(
    OfThePage, ChooserSourceTest,
    testing::Values(PageScript{"Detached", "input.click()"},
                    PageScript{"DetachedSyntheticClick", "input.dispatchEvent(synthetic())"},
                    PageScript{"DetachedLabel",
                               "const label = make('label'); label.append(input); "
                               "label.click()"},
                    PageScript{"InTheDocument", "document.body.append(input); input.click()"},
                    PageScript{"OpenShadowRoot", "inShadow('open', input).click()"},
                    PageScript{"ClosedShadowRoot", "inShadow('closed', input).click()"},
                    PageScript{"ShowPicker", "document.body.append(input); input.showPicker()"},
                    PageScript{"ShowPickerInAClosedShadowRoot",
                               "inShadow('closed', input).showPicker()"},
                    PageScript{"DetachedShowPicker", "input.showPicker()"}),
    nameOf);

TEST_F(NavigationSourceTest, ADetachedInputForFoldersRequestsFolders) {
  ASSERT_TRUE(loadSourcePage());
  run("make('input', {type: 'file', webkitdirectory: ''}).click()");
  ASSERT_TRUE(waitUntil([this] { return !dialogs_.shown.empty(); }));
  EXPECT_EQ(dialogs_.shown[0].frame, topFrame());
  EXPECT_TRUE(dialogs_.lastParameters.allowsDirectories);
}

TEST_F(NavigationSourceTest, AClickOnAnInputInAClosedShadowRootComesFromTheTopFrame) {
  ASSERT_TRUE(loadSourcePage());
  run("inShadow('closed', make('input', {type: 'file', "
      "style: 'position: fixed; inset: 0; width: 100%; height: 100%'}))");
  show();
  clickIntoWindow();
  ASSERT_TRUE(waitUntil([this] { return !dialogs_.shown.empty(); }));
  EXPECT_EQ(dialogs_.shown[0].frame, topFrame());
}

TEST_F(NavigationSourceTest, ADetachedInputOfAnotherFrameNamesNoFrame) {
  ASSERT_TRUE(loadSourcePage());
  run("frames[0].eval(`const input = document.createElement('input'); input.type = 'file'; "
      "input.click()`)");
  ASSERT_TRUE(waitUntil([this] { return !dialogs_.shown.empty(); }));
  EXPECT_EQ(dialogs_.shown[0].frame, FrameInfo{});
}

TEST_F(NavigationSourceTest, AChooserThatThePagePreventsIsLeftToNoOtherFrame) {
  ASSERT_TRUE(loadSourcePage());
  run("const input = document.body.appendChild(make('input', {type: 'file'}));"
      "input.onclick = (event) => event.preventDefault(); input.click();"
      "later(() => { document.title = 'later'; })");
  ASSERT_TRUE(waitUntil([this] { return evaluate("document.title") == "later"; }));
  run("frames[0].eval(`const input = document.createElement('input'); input.type = 'file'; "
      "input.click()`)");
  ASSERT_TRUE(waitUntil([this] { return !dialogs_.shown.empty(); }));
  EXPECT_EQ(dialogs_.shown[0].frame, FrameInfo{});
}

}  // namespace
}  // namespace navora
