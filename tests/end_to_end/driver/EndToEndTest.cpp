#include "end_to_end/driver/EndToEndTest.h"

#include <cstdlib>

#include <signal.h>

#include "tests/support/Files.h"

namespace navora::driver {

namespace {

// Runs one step of saving; a failure (the display has exited, for example) must not prevent the
// others.
template <typename Action>
void attempt(const char* what, const Action& action) {
  try {
    action();
  } catch (const std::exception& error) {
    GTEST_LOG_(WARNING) << "Cannot save " << what << ": " << error.what();
  }
}

bool isCrash(int signal) {
  return signal == SIGSEGV || signal == SIGABRT || signal == SIGBUS || signal == SIGILL ||
         signal == SIGFPE || signal == SIGTRAP;
}

}  // namespace

std::unique_ptr<VirtualDesktop> EndToEndTest::desktop_;

void EndToEndTest::startDesktop(VirtualDesktop::Options options) {
  desktop_ = std::make_unique<VirtualDesktop>(std::move(options));
}

void EndToEndTest::TearDownTestSuite() {
  desktop_.reset();
}

ServiceProcess::Options EndToEndTest::serviceOptions() const {
  ServiceProcess::Options options;
  if (std::filesystem::is_directory(NAVORA_TEST_PAGES)) options.testPages = NAVORA_TEST_PAGES;
  options.logs = desktop_->logs();
  return options;
}

void EndToEndTest::SetUp() {
  desktop().forget("navora");
  prepare();
  service_ = std::make_unique<ServiceProcess>(serviceOptions());
  serviceClient_ = std::make_unique<ServiceClient>(service_->controlUrl());
  application_ =
      std::make_unique<ApplicationProcess>(desktop(), applicationUrl(), applicationOptions());
  page_ = std::make_unique<PageDriver>(page("main"));
  if (startsApplication()) launch();
}

void EndToEndTest::TearDown() {
  if (application_) {
    const std::string crash = crashReport();
    if (!crash.empty()) ADD_FAILURE() << crash;
  }
  if (HasFailure()) saveArtifacts();
  page_.reset();
  application_.reset();
  serviceClient_.reset();
  service_.reset();
}

void EndToEndTest::launch() {
  application_->start();
  const WindowInfo window = application_->waitForMainWindow();
  desktop().display().waitUntilActive(window.id);
  page().waitUntilTrue("document.readyState === 'complete'", "the first page is complete");
}

void EndToEndTest::signIn() {
  page().waitUntilTrue("location.pathname === '/login'", "the login page is shown");
  page().type("[name=name]", "demo");
  page().type("[name=password]", "demo\n");
  page().waitUntilTrue("location.pathname === '/' && document.readyState === 'complete'",
                       "the first page after signing in is complete");
}

AccessibleObject EndToEndTest::widget(const std::string& role, const std::string& name) {
  return desktop().accessibility().waitFor({.role = role, .name = name}, application().pid());
}

bool EndToEndTest::hasWidget(const std::string& role, const std::string& name) {
  return desktop()
      .accessibility()
      .find({.role = role, .name = name}, application().pid())
      .has_value();
}

PageDriver EndToEndTest::page(const std::string& name) {
  const auto content = [this] { return application_->waitForMainWindow().content; };
  return {desktop(), service_->controlUrl(), content, name};
}

std::filesystem::path EndToEndTest::artifacts() const {
  const char* named = std::getenv("NAVORA_TEST_ARTIFACTS");
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  const std::filesystem::path folder =
      std::filesystem::path(named && *named ? named : NAVORA_ARTIFACTS) /
      (std::string(test->test_suite_name()) + "." + test->name());
  std::filesystem::create_directories(folder);
  return folder;
}

void EndToEndTest::saveArtifacts() {
  const std::filesystem::path folder = artifacts();
  attempt("the screenshot", [&] { desktop().display().screenshot().save(folder / "screen.png"); });
  attempt("the windows",
          [&] { writeFile(folder / "windows.txt", desktop().display().describeWindows()); });
  attempt("the widgets",
          [&] { writeFile(folder / "widgets.txt", desktop().accessibility().describe()); });
  if (serviceClient_ && service_->running()) {
    attempt("the requests",
            [&] { writeFile(folder / "requests.txt", describe(serviceClient_->requests())); });
  }
  attempt("the logs", [&] {
    std::filesystem::copy(desktop().logs(), folder / "logs",
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing);
  });
  GTEST_LOG_(INFO) << "Saved in " << folder.string();
}

std::string EndToEndTest::crashReport() {
  const std::string errors = application_->errorText();
  if (errors.find("Sanitizer") != std::string::npos ||
      errors.find(": runtime error: ") != std::string::npos) {
    return "A sanitizer found a mistake in the application:\n" + errors;
  }
  if (!application_->started() || application_->running()) return {};
  const int signal = application_->process().exitStatus()->signal;
  if (!isCrash(signal)) return {};
  return "The application crashed: signal " + std::to_string(signal) + "\n" + errors;
}

}  // namespace navora::driver
