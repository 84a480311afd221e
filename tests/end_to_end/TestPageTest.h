#pragma once

#include <string>

#include "end_to_end/driver/EndToEndTest.h"
#include "tests/support/HttpServer.h"

namespace navora::driver {

// Tests on pages of the service that are made for them, with a foreign server beside it whose log
// shows whatever leaves the application.
class TestPageTest : public EndToEndTest {
 protected:
  // Shows a page of tests/end_to_end/pages in the main window; "{{foreign}}" in it is the foreign
  // server's origin, and `query` ("name=value") fills further places.
  void openTestPage(const std::string& file, const std::string& query = {});

  // The same for bridge.html, with everything behind it that the application says to a new page.
  void openBridgePage();
  // The application has handled every message that the bridge page sent before.
  void settle() { page().evaluate("await roundTrip()"); }

  // Clicks a link that does leave the application and waits until it has: whatever an earlier
  // action was going to open, it has opened by then. Gives what was opened before.
  std::vector<std::string> openedBeforeMarker();

  HttpServer& foreign() { return foreign_; }

 private:
  HttpServer foreign_{{.body = "<!doctype html><title>Foreign</title><p>A foreign page."}};
};

}  // namespace navora::driver
