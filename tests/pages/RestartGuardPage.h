#pragma once

#include <string>

#include "end_to_end/driver/Keyboard.h"
#include "pages/PageTest.h"
#include "tests/support/Files.h"

namespace navora::driver {

// Pages with the guard installed as in the application. `arrived` records the events that reach the
// window, before the guard's handlers run, and `lastKeyUp` the code of the last key. `lateness`
// puts the guard's clock forward, and `isBroken` makes the values of text areas unreadable.
class RestartGuardPage : public PageTest {
 protected:
  static constexpr const char* textReason =
      "Send or clear the text you’ve typed, then continue the update.";
  static constexpr const char* formReason =
      "Submit or reset the form you’ve started, then continue the update.";
  static constexpr const char* requestReason =
      "Wait until your changes have been saved, then continue the update.";
  static constexpr const char* stuckReason =
      "Saving is taking long. If it doesn’t end, reload the page, and continue the update.";
  static constexpr const char* reloadReason =
      "Make sure that your changes are saved, reload the page, and continue the update.";
  static constexpr const char* fields = "/__test/pages/fields.html?lang=en";

  RestartGuardPage() {
    const std::string guard = readFile(RESTART_GUARD_SCRIPT);
    EXPECT_FALSE(guard.empty());
    writeFile(script_, std::string(watch) + guard);
  }

  std::string firstScript() const override { return script_; }

  // Returns the guard's answer: null if the page is ready, which also freezes it.
  Json prepare() { return page().evaluate("return window.NavoraUpdateGuard.prepare() ?? null"); }
  void resume() { page().evaluate("window.NavoraUpdateGuard.resume()"); }
  // Returns the guard's answer and resumes the page.
  Json ask() {
    return page().evaluate(
        "const answer = window.NavoraUpdateGuard.prepare() ?? null;"
        "window.NavoraUpdateGuard.resume(); return answer");
  }

  // Types with real keys and waits until the element contains the text.
  void type(const std::string& selector, const std::string& text) {
    page().type(selector, text);
    page().waitUntilTrue(content(selector) + ".includes(" + Json(text).dump() + ")");
  }
  std::string content(const std::string& selector) const {
    return "((element) => element.value ?? element.textContent)(document.querySelector(" +
           Json(selector).dump() + "))";
  }
  // Moves the focus to a button.
  void leave() {
    page().click("#elsewhere");
    page().waitUntilTrue("document.activeElement === byId('elsewhere')");
  }

  void expectNoFailures() { EXPECT_EQ(page().evaluate("return failures"), Json::array()); }

 private:
  static constexpr const char* watch = R"(
    window.arrived = [];
    window.lateness = 0;
    (() => {
      const {apply} = Reflect;
      const now = performance.now.bind(performance);
      performance.now = () => now() + lateness;
      const {value} = Object.getOwnPropertyDescriptors(HTMLTextAreaElement.prototype);
      const get = function() {
        if (window.isBroken) throw new Error('broken by the test');
        return apply(value.get, this, []);
      };
      window.unbrokenValue = (element) => apply(value.get, element, []);
      Object.defineProperty(HTMLTextAreaElement.prototype, 'value', {...value, get});
    })();
    window.inputTypes = ['keydown', 'keypress', 'keyup', 'beforeinput', 'input', 'change',
      'compositionstart', 'compositionupdate', 'compositionend', 'cut', 'copy', 'paste',
      'pointerdown', 'pointerup', 'pointermove', 'mousedown', 'mouseup', 'mousemove', 'click',
      'dblclick', 'auxclick', 'contextmenu', 'wheel', 'dragstart', 'dragenter', 'dragover', 'drop',
      'submit', 'reset', 'focusin', 'focusout'];
    for (const type of inputTypes) {
      window.addEventListener(type, (event) => {
        if (!event.isTrusted) return;
        arrived[arrived.length] = type;
        if (type === 'keyup') window.lastKeyUp = event.code;
      }, {capture: true, passive: true});
    }
  )";

  TemporaryDirectory folder_{"navora-restart-guard"};
  std::filesystem::path script_ = folder_.path() / "guard.js";
};

}  // namespace navora::driver
