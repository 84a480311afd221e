#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "end_to_end/driver/Accessibility.h"
#include "end_to_end/driver/ApplicationProcess.h"
#include "end_to_end/driver/PageDriver.h"
#include "end_to_end/driver/ServiceClient.h"
#include "end_to_end/driver/ServiceProcess.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::driver {

// The fixture of end-to-end tests: one desktop for all tests of a suite; for each test a new
// service and the application without stored data, started and showing its window. If a test fails,
// a screenshot, the logs and the state are saved (see artifacts()). A test also fails if the
// application crashes or a sanitizer reports an error.
class EndToEndTest : public testing::Test {
 public:
  static void SetUpTestSuite() { startDesktop({}); }
  static void TearDownTestSuite();

 protected:
  // Starts a desktop with other options; for the SetUpTestSuite of a suite.
  static void startDesktop(VirtualDesktop::Options options);

  void SetUp() override;
  void TearDown() override;

  // A suite may override the following. prepare() runs before the application starts and may store
  // files on the desktop.
  virtual void prepare() {}
  virtual ServiceProcess::Options serviceOptions() const;
  virtual ApplicationProcess::Options applicationOptions() const { return {}; }
  // Returns the NAVORA_URL of the application.
  virtual std::string applicationUrl() const { return service_->url(); }
  // If this returns false, the test starts the application itself.
  virtual bool startsApplication() const { return true; }

  // Starts the application, and waits for its window and the page in it.
  void launch();
  // Signs in as the demo account through the login page, and waits for the first page.
  void signIn();
  // Waits for a visible widget of the application with this role and name.
  AccessibleObject widget(const std::string& role, const std::string& name = {});
  bool hasWidget(const std::string& role, const std::string& name = {});

  VirtualDesktop& desktop() { return *desktop_; }
  ServiceProcess& service() { return *service_; }
  const ServiceProcess& service() const { return *service_; }
  ServiceClient& serviceClient() { return *serviceClient_; }
  ApplicationProcess& application() { return *application_; }
  PageDriver& page() { return *page_; }
  // Returns a driver for a page with a name of its own, as the test pages have.
  PageDriver page(const std::string& name);

  // Creates and returns the folder for files about this test: named after it, below
  // NAVORA_TEST_ARTIFACTS or "artifacts" in the build folder.
  std::filesystem::path artifacts() const;
  // Saves a screenshot, the windows, the widgets, the requests and the logs. Called on failure.
  void saveArtifacts();
  // Returns how the application crashed or what a sanitizer reported, or an empty string.
  std::string crashReport();

 private:
  static std::unique_ptr<VirtualDesktop> desktop_;
  std::unique_ptr<ServiceProcess> service_;
  std::unique_ptr<ServiceClient> serviceClient_;
  std::unique_ptr<ApplicationProcess> application_;
  std::unique_ptr<PageDriver> page_;
};

}  // namespace navora::driver
