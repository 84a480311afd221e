#include "end_to_end/driver/PageDriver.h"

#include <cmath>

#include "end_to_end/driver/Keyboard.h"
#include "end_to_end/driver/Screenshot.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::driver {

namespace {

// Returns the element's rectangle in the viewport once it is the same in two successive frames, or
// a message that says why the element cannot be clicked.
constexpr const char* locateScript = R"(
  const frame = () => new Promise((resume) => {
    if (document.hidden) setTimeout(resume, 50);  // a hidden page has no animation frames
    else requestAnimationFrame(resume);
  });
  const element = document.querySelector(SELECTOR);
  if (!element) return 'it does not exist';
  element.scrollIntoView({block: 'center', inline: 'center', behavior: 'instant'});
  let box = element.getBoundingClientRect();
  for (let before = null; !before || before.x !== box.x || before.y !== box.y;) {
    await frame();
    before = box;
    box = element.getBoundingClientRect();
  }
  if (box.width === 0 || box.height === 0) return 'it has no size';
  const hit = document.elementFromPoint(box.x + box.width / 2, box.y + box.height / 2);
  if (!hit) return 'it lies outside the view';
  const own = element.contains(hit) || hit.contains(element) ||
      [...(element.labels ?? [])].some((label) => label.contains(hit));
  if (!own) return 'it is covered by ' + hit.outerHTML.slice(0, 120);
  return [box.x, box.y, box.width, box.height];
)";

std::string withSelector(std::string script, const std::string& selector) {
  const std::string placeholder = "SELECTOR";
  return script.replace(script.find(placeholder), placeholder.size(), Json(selector).dump());
}

int rounded(const Json& number) {
  return static_cast<int>(std::lround(number.get<double>()));
}

}  // namespace

PageDriver::PageDriver(VirtualDesktop& desktop, const std::string& url,
                       std::function<Rectangle()> area, std::string name)
    : desktop_(desktop), http_(url), area_(std::move(area)), name_(std::move(name)) {}

PageDriver PageDriver::frame(const std::string& selector, const std::string& name) {
  return {desktop_, http_.origin(), [this, selector] { return rectangle(selector); }, name};
}

PageDriver::Answer PageDriver::ask(const std::string& script, std::chrono::milliseconds timeout) {
  const Json request{{"script", script}, {"timeout", timeout.count()}};
  const HttpReply reply = http_.sendJson("POST", "/__test/driver/" + name_ + "/evaluate", request,
                                         {}, timeout + std::chrono::seconds(5));
  const Json answer = Json::parse(reply.body, nullptr, false);
  if (reply.status == 200 && answer.is_object() && answer.value("ok", false)) {
    return {answer.at("value"), {}};
  }
  const bool hasText = answer.is_object() && answer.contains("error");
  return {std::nullopt, hasText ? answer["error"].dump() : reply.body};
}

Json PageDriver::evaluate(const std::string& script, std::chrono::milliseconds timeout) {
  const Answer answer = ask(script, timeout);
  if (!answer.value) {
    throw TestError("The page \"" + name_ + "\" failed: " + answer.error + "\nin " + script);
  }
  return *answer.value;
}

std::optional<Json> PageDriver::tryEvaluate(const std::string& script,
                                            std::chrono::milliseconds timeout) {
  return ask(script, timeout).value;
}

void PageDriver::waitUntilTrue(const std::string& expression, std::string_view description,
                               std::chrono::milliseconds timeout) {
  constexpr std::chrono::milliseconds perLook{1000};
  std::string last = "nothing";
  waitUntil(
      [&] {
        const Answer answer = ask("return !!(" + expression + ")", perLook);
        last = answer.value ? answer.value->dump() : answer.error;
        return answer.value == Json(true);
      },
      description.empty() ? "the page says " + expression : std::string(description), timeout,
      [&] { return "The last answer to " + expression + " was " + last; });
}

// Frames reach the screen in order: once a mark that was added last has been on the screen, so has
// everything before it.
void PageDriver::waitUntilPainted() {
  constexpr PixelColor color{1, 254, 3};
  const auto marked = [&] {
    return Screenshot::capture(desktop_.display().connection(), area_()).pixelsLike(color, 0) > 0;
  };
  evaluate(
      "await document.fonts.ready; const mark = document.createElement('div');"
      "mark.id = 'driver-mark'; mark.style.cssText = 'position: fixed; left: 0; top: 0; width: 8px;"
      " height: 8px; background: rgb(1, 254, 3); z-index: 2147483647';"
      "document.documentElement.append(mark)");
  waitUntil(marked, "the page's mark is painted");
  evaluate("document.querySelector('#driver-mark').remove()");
  waitUntil([&] { return !marked(); }, "the page is painted without the mark");
}

bool PageDriver::exists(const std::string& selector) {
  return evaluate(withSelector("return !!document.querySelector(SELECTOR)", selector));
}

std::string PageDriver::text(const std::string& selector) {
  const std::string script =
      withSelector("return document.querySelector(SELECTOR)?.innerText ?? null", selector);
  return waitFor(
      [&]() -> std::optional<std::string> {
        const auto value = tryEvaluate(script);
        return value && value->is_string() ? std::optional(value->get<std::string>())
                                           : std::nullopt;
      },
      "the page has an element " + selector);
}

Point PageDriver::viewportOrigin() {
  // Only mouse events tell a page its place on the screen. An earlier event's offset may be
  // outdated: the window can have moved, and bars above the page are shown and hidden.
  evaluate("window.__driverOffset = null");
  const Point center = area_().center();
  int step = 0;
  Json offset;
  waitUntil(
      [&] {
        desktop_.mouse().moveTo({center.x + step++ % 5, center.y});
        offset = evaluate("return window.__driverOffset ?? null");
        return offset.is_object();
      },
      "the page \"" + name_ + "\" sees the pointer move over the window");
  return {rounded(offset.at("x")), rounded(offset.at("y"))};
}

Rectangle PageDriver::rectangle(const std::string& selector) {
  const std::string script = withSelector(locateScript, selector);
  std::string obstacle;
  const auto locate = [&]() -> std::optional<Json> {
    const Answer answer = ask(script, std::chrono::seconds(5));
    if (answer.value && answer.value->is_array()) return answer.value;
    obstacle = answer.value ? answer.value->get<std::string>() : answer.error;
    return std::nullopt;
  };
  const Point origin = viewportOrigin();
  const Json box = waitFor(locate, "the element " + selector + " can be hit", defaultTimeout(),
                           [&] { return "It cannot: " + obstacle; });
  return {origin.x + rounded(box.at(0)), origin.y + rounded(box.at(1)), rounded(box.at(2)),
          rounded(box.at(3))};
}

void PageDriver::click(const std::string& selector, MouseButton button,
                       std::string_view modifiers) {
  const Point target = rectangle(selector).center();
  const Keyboard::Hold held(desktop_.keyboard(), modifiers);
  desktop_.mouse().click(target, button);
}

void PageDriver::type(const std::string& selector, std::string_view text) {
  focusByClick(selector);
  desktop_.keyboard().type(text);
}

// Waits for the focus, because keys that precede it reach another element. Clicks again if a page
// that is still being laid out moved the element away from under the pointer.
void PageDriver::focusByClick(const std::string& selector) {
  // An element stays the active one while its window does not have the focus.
  const std::string script = withSelector(
      "const element = document.querySelector(SELECTOR);"
      "return document.hasFocus() && !!element && element.contains(document.activeElement)",
      selector);
  const auto hasFocus = [&] { return tryEvaluate(script) == Json(true); };
  // The engine does not order keys behind clicks: after a click that changes no focus, and so
  // cannot be waited for, the selection that it makes could replace what the keys have written.
  if (hasFocus()) return;
  constexpr std::chrono::seconds perClick{3};
  waitUntil(
      [&] {
        click(selector);
        return becomesTrue(hasFocus, perClick);
      },
      "the element " + selector + " has the focus");
}

}  // namespace navora::driver
