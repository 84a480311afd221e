// Measures what the restart guard costs a page with many fields: a key, a change of the field, a
// request and an answer. Reports the difference between the page with the guard and without it.
#include <exception>
#include <iomanip>
#include <iostream>
#include <string>

#include "end_to_end/driver/ApplicationProcess.h"
#include "end_to_end/driver/PageDriver.h"
#include "end_to_end/driver/ServiceProcess.h"
#include "end_to_end/driver/VirtualDesktop.h"
#include "tests/support/Files.h"
#include "tests/support/Wait.h"

namespace navora::bench {
namespace {

using driver::Json;

// Fields of every kind, each of them with text of the user's, and functions that time in
// milliseconds. The engine's clock is too coarse for a single key.
constexpr const char* page = R"(
  const kinds = ['<input>', '<textarea></textarea>', '<div contenteditable></div>'];
  for (let index = 0; index < 200; ++index)
    document.body.insertAdjacentHTML('beforeend', kinds[index % 3].replace('>', ` id="f${index}">`));
  const fields = [...document.body.children].filter((each) => each.id.startsWith('f'));
  const strike = () => {
    const target = document.activeElement;
    target.dispatchEvent(new KeyboardEvent('keydown', {key: 'x', bubbles: true, composed: true}));
    document.execCommand('insertText', false, 'x');
    target.dispatchEvent(new KeyboardEvent('keyup', {key: 'x', bubbles: true, composed: true}));
  };
  const task = () => new Promise((resume) => setTimeout(resume));
  // Returns the time of one call in the quickest of ten rounds, which the machine disturbed least.
  const timed = async (count, work, before = () => {}) => {
    let least = Infinity;
    for (let round = 0; round < 10; ++round) {
      before();
      await task();
      const start = performance.now();
      for (let index = 0; index < count; ++index) await work(index);
      await task();
      least = Math.min(least, (performance.now() - start) / count);
    }
    return least;
  };
  for (const field of fields) {
    field.focus();
    strike();
  }
  const measure = (id) => {
    const field = document.getElementById(id);
    field.focus();
    return timed(200, strike, () => {
      if ('value' in field) field.value = 'x';
      else field.textContent = 'x';
    });
  };
  const result = {};
  result['a key in a line'] = await measure('f0');
  result['a key in a text area'] = await measure('f1');
  result['a key in an editable element'] = await measure('f2');
  result['the first key in another field'] = await timed(400, (index) => {
    fields[index % fields.length].focus();
    strike();
  });
  const body = JSON.stringify({other: 'words'});
  result['a request'] = await timed(200, () => fetch('/__test/pages/plain.html', {method: 'POST', body}));
  if (window.NavoraUpdateGuard)
    result['the answer'] = await timed(200, () => NavoraUpdateGuard.prepare());
  return result;
)";

Json measure(driver::VirtualDesktop& desktop, driver::ServiceProcess& service,
             const std::string& script) {
  driver::ApplicationProcess::Options options{.executable = SAMPLE_BROWSER};
  options.environment["SAMPLE_BROWSER_SCRIPT"] = script;
  driver::ApplicationProcess browser(desktop, service.url("/__test/pages/plain.html"),
                                     std::move(options));
  browser.start();
  desktop.display().waitUntilActive(browser.waitForMainWindow().id);
  driver::PageDriver driver(desktop, service.controlUrl(),
                            [&] { return browser.waitForMainWindow().content; });
  driver.waitUntilTrue("document.readyState === 'complete'");
  return driver.evaluate(page, std::chrono::minutes(2));
}

void run() {
  const TemporaryDirectory folder("navora-guard-benchmark");
  // No script can make trusted keys.
  const std::string guard = readFile(RESTART_GUARD_SCRIPT);
  const std::string check = "if (!event.isTrusted) return;";
  const auto at = guard.find(check);
  if (at == std::string::npos) throw TestError("The guard does not look at isTrusted any more");
  writeFile(folder.path() / "with.js", std::string(guard).erase(at, check.size()));
  writeFile(folder.path() / "without.js", "");
  driver::VirtualDesktop desktop;
  driver::ServiceProcess service({.testPages = PAGE_TEST_PAGES});
  const Json without = measure(desktop, service, folder.path() / "without.js");
  const Json with = measure(desktop, service, folder.path() / "with.js");
  for (const auto& [what, time] : with.items()) {
    const double alone = without.value(what, 0.0);
    std::cout << std::left << std::setw(32) << what << std::right << std::fixed
              << std::setprecision(3) << std::setw(9) << time.get<double>() - alone
              << " ms more than" << std::setw(9) << alone << " ms\n";
  }
}

}  // namespace
}  // namespace navora::bench

int main() {
  try {
    navora::bench::run();
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "The benchmark ended early: " << failure.what() << '\n';
    return 1;
  }
}
