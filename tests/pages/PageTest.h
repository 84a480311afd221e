#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "end_to_end/driver/ApplicationProcess.h"
#include "end_to_end/driver/PageDriver.h"
#include "end_to_end/driver/ServiceClient.h"
#include "end_to_end/driver/ServiceProcess.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::driver {

// A page of the development service in a plain browser window. One desktop for all tests of a
// suite, a fresh service and browser for each test.
class PageTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { desktop_ = std::make_unique<VirtualDesktop>(); }
  static void TearDownTestSuite() { desktop_.reset(); }

  void TearDown() override;

  // The path of a script that runs in every page before the page's own; none when empty.
  virtual std::string firstScript() const { return {}; }

  // Opens a path of the service and waits until the page is complete.
  void open(const std::string& path);
  // Opens the today view, signed in.
  void openToday();
  void switchColorScheme() { browser_->process().signal(SIGHUP); }

  // Puts a stand-in for the application's side of the message into the page.
  void listen();
  // Runs the appearance script as the application does at the document's end.
  void runScript();
  // All appearances that were posted, as soon as there are `count` of them.
  std::vector<Json> posted(std::size_t count);
  // Those that were posted up to now and because of everything that happened up to now: makes one
  // more change, another placeholder, and gives what came before it.
  std::vector<Json> settled();

  PageDriver& page() { return *page_; }
  ServiceProcess& service() { return service_; }
  static VirtualDesktop& desktop() { return *desktop_; }

 private:
  static std::unique_ptr<VirtualDesktop> desktop_;
  ServiceProcess service_{{.testPages = PAGE_TEST_PAGES, .arguments = {"--job-delay", "1500"}}};
  std::unique_ptr<ApplicationProcess> browser_;
  std::unique_ptr<PageDriver> page_;
  int markers_ = 0;
};

}  // namespace navora::driver
