#include "end_to_end/TestPageTest.h"

#include <algorithm>

namespace navora::driver {

void TestPageTest::openTestPage(const std::string& file, const std::string& query) {
  const std::string path = "/__test/pages/" + file;
  const std::string target = path + "?foreign=" + foreign_.origin() + "&" + query;
  page().waitUntilTrue("document.readyState === 'complete'");
  page().tryEvaluate("setTimeout(() => { location.href = '" + target + "'; }); return true");
  page().waitUntilTrue("location.pathname === '" + path + "' && document.readyState === 'complete'",
                       "the test page " + file);
}

void TestPageTest::openBridgePage() {
  openTestPage("bridge.html");
  // The reply to the first message may precede the page's listener for it.
  settle();
}

std::vector<std::string> TestPageTest::openedBeforeMarker() {
  const std::string marker = foreign_.url("/marker");
  page().click("#marker");
  waitUntil([&] { return std::ranges::count(desktop().openedUrls().all(), marker) > 0; },
            "the marker link to be opened in the browser");
  auto opened = desktop().openedUrls().all();
  opened.erase(std::ranges::find(opened, marker), opened.end());
  return opened;
}

}  // namespace navora::driver
