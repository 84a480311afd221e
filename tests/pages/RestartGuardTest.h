#pragma once

#include <string>

#include "pages/RestartGuardPage.h"

namespace navora::driver {

// The conditions under which the guard reports unsaved input, on a page with every kind of editor.
class RestartGuardTest : public RestartGuardPage {
 protected:
  void SetUp() override { open(fields); }

  void clear(const std::string& selector) {
    page().evaluate("const element = document.querySelector(" + Json(selector).dump() +
                    "); if ('value' in element) element.value = ''; else element.textContent = ''");
  }

  // Returns the guard's answers during a request and after it; `request` returns a promise for the
  // end of the request.
  Json aroundRequest(const std::string& request) {
    return page().evaluate(
        "const ask = () => { const answer = NavoraUpdateGuard.prepare() ?? null;"
        "  NavoraUpdateGuard.resume(); return answer; };\n"
        "const url = '/__test/pages/plain.html';\n"
        "const sent = (request) => new Promise((resume) => request.addEventListener('loadend', "
        "resume));\n"
        "const end = (() => {" +
        request +
        "})();\nconst during = ask(); await end.catch(() => {});"
        "await new Promise((resume) => setTimeout(resume)); return [during, ask()]");
  }
  static Json blocks() { return {requestReason, nullptr}; }
  static Json doesNotBlock() { return {nullptr, nullptr}; }

  ServiceClient client_{service().controlUrl()};
};

}  // namespace navora::driver
