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

// A page of the development service in the sample browser. One desktop for all tests of a suite,
// and a new service and browser for each test.
class PageTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { desktop_ = std::make_unique<VirtualDesktop>(); }
  static void TearDownTestSuite() { desktop_.reset(); }

  void TearDown() override;

  // Returns the path of a script that runs in every page before the page's own; empty for none.
  virtual std::string firstScript() const { return {}; }

  // Loads a path of the service and waits until the page is complete.
  void open(const std::string& path);
  // Signs in and loads the today view.
  void openToday();
  void switchColorScheme() { browser_->process().signal(SIGHUP); }

  // Installs a fake message handler in the page.
  void listen();
  // Runs the appearance script as the application does at document end.
  void runScript();
  // Waits for at least `count` appearance messages and returns them all.
  std::vector<Json> posted(std::size_t count);
  // Returns the messages caused by all changes so far: makes one more change, of the placeholder,
  // and returns those before its message.
  std::vector<Json> settled();

  // Types into the focused element with real keys and waits until `expression` is true in the page.
  void typeUntil(const std::string& text, const std::string& expression);

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
