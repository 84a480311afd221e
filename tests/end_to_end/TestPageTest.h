#pragma once

#include <string>

#include "end_to_end/driver/EndToEndTest.h"
#include "tests/support/HttpServer.h"

namespace navora::driver {

// Tests with pages made for them, and a server of another origin that records every request.
class TestPageTest : public EndToEndTest {
 protected:
  // Loads a page of tests/end_to_end/pages in the main window. "{{foreign}}" in it is replaced by
  // the foreign server's origin, and other placeholders by the values in `query` ("name=value").
  void openTestPage(const std::string& file, const std::string& query = {});

  // Loads bridge.html and waits until the application's events for a new page have been dispatched.
  void openBridgePage();
  // Waits until the application has handled every earlier message of the bridge page.
  void settle() { page().evaluate("await roundTrip()"); }

  // Clicks a foreign link and waits until it has been opened; everything that earlier actions open
  // precedes it. Returns the URLs opened before it.
  std::vector<std::string> openedBeforeMarker();

  HttpServer& foreign() { return foreign_; }

 private:
  HttpServer foreign_{{.body = "<!doctype html><title>Foreign</title><p>A foreign page."}};
};

}  // namespace navora::driver
