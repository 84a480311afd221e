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

// The fixture of end-to-end tests: one desktop for all tests of a suite; for each test a fresh
// service and the application as if it had just been installed, started and showing its window.
// When a test fails, a screenshot, the logs and the state of everything are saved (see
// `artifacts`). A test fails, too, when the application crashed or a sanitizer complained.
class EndToEndTest : public testing::Test {
 public:
  static void SetUpTestSuite() { startDesktop({}); }
  static void TearDownTestSuite();

 protected:
  // For suites that need another kind of desktop: call it from a SetUpTestSuite of their own.
  static void startDesktop(VirtualDesktop::Options options);

  void SetUp() override;
  void TearDown() override;

  // What a suite may change about a test's beginning. What `prepare` stores on the desktop is there
  // when the application starts.
  virtual void prepare() {}
  virtual ServiceProcess::Options serviceOptions() const;
  virtual ApplicationProcess::Options applicationOptions() const { return {}; }
  // The NAVORA_URL of the application.
  virtual std::string applicationUrl() const { return service_->url(); }
  // False leaves the start of the application to the test.
  virtual bool startsApplication() const { return true; }

  // Starts the application and waits for its window and for the page in it.
  void launch();
  // Signs in as the demonstration account through the login page, and waits for the first page.
  void signIn();
  // The first widget of the application with this role and name on the screen.
  AccessibleObject widget(const std::string& role, const std::string& name = {});
  bool hasWidget(const std::string& role, const std::string& name = {});

  VirtualDesktop& desktop() { return *desktop_; }
  ServiceProcess& service() { return *service_; }
  const ServiceProcess& service() const { return *service_; }
  ServiceClient& serviceClient() { return *serviceClient_; }
  ApplicationProcess& application() { return *application_; }
  PageDriver& page() { return *page_; }
  // A page that names itself, like the test pages do.
  PageDriver page(const std::string& name);

  // Where this test leaves what it wants to be looked at: a folder named after it below
  // NAVORA_TEST_ARTIFACTS or the build folder's "artifacts".
  std::filesystem::path artifacts() const;
  // A screenshot, the windows, the widgets, the requests and the logs; done by itself on failure.
  void saveArtifacts();
  // How the application has crashed, or what a sanitizer said of it; empty when all is well.
  std::string crashReport();

 private:
  static std::unique_ptr<VirtualDesktop> desktop_;
  std::unique_ptr<ServiceProcess> service_;
  std::unique_ptr<ServiceClient> serviceClient_;
  std::unique_ptr<ApplicationProcess> application_;
  std::unique_ptr<PageDriver> page_;
};

}  // namespace navora::driver
