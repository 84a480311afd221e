#pragma once

#include <string>

#include "end_to_end/driver/Keyboard.h"
#include "pages/PageTest.h"
#include "tests/support/Files.h"

namespace navora::driver {

// Pages into which the guard is put as the application does it. What arrives at the page's window
// is written down before the guard hears of it, in `arrived`.
class RestartGuardPage : public PageTest {
 protected:
  static constexpr const char* textReason =
      "Send or clear the text you’ve typed, then continue the update.";
  static constexpr const char* formReason =
      "Submit or reset the form you’ve started, then continue the update.";
  static constexpr const char* requestReason =
      "Wait until your changes have been saved, then continue the update.";
  static constexpr const char* fields = "/__test/pages/fields.html?lang=en";

  RestartGuardPage() {
    const std::string guard = readFile(RESTART_GUARD_SCRIPT);
    EXPECT_FALSE(guard.empty());
    writeFile(script_, std::string(watch) + guard);
  }

  std::string firstScript() const override { return script_; }

  // The guard's answer, null when the page is ready; then nobody gets into it.
  Json prepare() { return page().evaluate("return window.NavoraUpdateGuard.prepare() ?? null"); }
  void resume() { page().evaluate("window.NavoraUpdateGuard.resume()"); }
  // The guard's answer, after which the page goes on.
  Json ask() {
    return page().evaluate(
        "const answer = window.NavoraUpdateGuard.prepare() ?? null;"
        "window.NavoraUpdateGuard.resume(); return answer");
  }

  // Types with real keys and waits until the text is there.
  void type(const std::string& selector, const std::string& text) {
    // The engine does not keep keys behind clicks: a click into what has the focus already, not
    // waited for, could select what these keys have written.
    const bool hasFocus = page().evaluate(
        "return document.activeElement === document.querySelector(" + Json(selector).dump() + ")");
    if (hasFocus) {
      desktop().keyboard().type(text);
    } else {
      page().type(selector, text);
    }
    page().waitUntilTrue(content(selector) + ".includes(" + Json(text).dump() + ")");
  }
  std::string content(const std::string& selector) const {
    return "((element) => element.value ?? element.textContent)(document.querySelector(" +
           Json(selector).dump() + "))";
  }
  // Takes the focus from whatever has it.
  void leave() {
    page().click("#elsewhere");
    page().waitUntilTrue("document.activeElement === byId('elsewhere')");
  }

  void expectNoFailures() { EXPECT_EQ(page().evaluate("return failures"), Json::array()); }

 private:
  static constexpr const char* watch = R"(
    window.arrived = [];
    window.inputTypes = ['keydown', 'keypress', 'keyup', 'beforeinput', 'input', 'change',
      'compositionstart', 'compositionupdate', 'compositionend', 'cut', 'copy', 'paste',
      'pointerdown', 'pointerup', 'pointermove', 'mousedown', 'mouseup', 'mousemove', 'click',
      'dblclick', 'auxclick', 'contextmenu', 'wheel', 'dragstart', 'dragenter', 'dragover', 'drop',
      'submit', 'reset', 'focusin', 'focusout'];
    for (const type of inputTypes) {
      window.addEventListener(type, (event) => { if (event.isTrusted) arrived[arrived.length] = type; },
                              {capture: true, passive: true});
    }
  )";

  TemporaryDirectory folder_{"navora-restart-guard"};
  std::filesystem::path script_ = folder_.path() / "guard.js";
};

}  // namespace navora::driver
