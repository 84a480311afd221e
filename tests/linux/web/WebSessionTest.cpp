#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include <gmock/gmock.h>

#include "hosts/linux/web/WebSession.h"
#include "linux/support/EnvironmentVariable.h"
#include "linux/web/WebViewTest.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::AllOf;
using testing::ExitedWithCode;
using testing::HasSubstr;
using testing::Not;

constexpr const char* warning =
    "Navora: this system does not allow the web sandbox; pages run without it\n";

// Makes web sessions with a PATH of its own. Each runs in a process of its own: the engine has one
// set of processes per program.
class WebSessionDeathTest : public WebViewTest {
 protected:
  void SetUp() override {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    std::filesystem::create_directory(programs_);
  }

  void makeBwrap(const std::string& script) const {
    const auto file = programs_ / "bwrap";
    writeFile(file, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  }

  // Exits with status 0 if the session's sandbox is as `expected`.
  [[noreturn]] void exitWithSandbox(bool expected) {
    const EnvironmentVariable path("PATH", programs_.string());
    const bool enabled = webkit_web_context_get_sandbox_enabled(session().context()) != FALSE;
    std::_Exit(enabled == expected ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  // Exits with status 0 if a page loads in a session without a sandbox.
  [[noreturn]] void exitWithPage() {
    const EnvironmentVariable path("PATH", programs_.string());
    const bool enabled = webkit_web_context_get_sandbox_enabled(session().context()) != FALSE;
    const bool loaded = loadHtml("<title>Notes</title>") && evaluate("document.title") == "Notes";
    std::_Exit(loaded && !enabled ? EXIT_SUCCESS : EXIT_FAILURE);
  }

  const TemporaryDirectory folder_{"navora-web-session"};
  const std::filesystem::path programs_ = folder_.path() / "bin";
};

TEST_F(WebSessionDeathTest, WithoutBwrapItWarnsAndPagesLoadWithoutTheSandbox) {
  EXPECT_EXIT(exitWithPage(), ExitedWithCode(EXIT_SUCCESS),
              AllOf(HasSubstr(warning), Not(HasSubstr("CRITICAL"))));
}

TEST_F(WebSessionDeathTest, IfBwrapFailsItWarnsAndPagesLoadWithoutTheSandbox) {
  makeBwrap("exit 1");
  EXPECT_EXIT(exitWithPage(), ExitedWithCode(EXIT_SUCCESS),
              AllOf(HasSubstr(warning), Not(HasSubstr("CRITICAL"))));
}

TEST_F(WebSessionDeathTest, IfBwrapWorksItEnablesTheSandboxWithoutAWarning) {
  makeBwrap("exit 0");
  EXPECT_EXIT(exitWithSandbox(true), ExitedWithCode(EXIT_SUCCESS), Not(HasSubstr(warning)));
}

}  // namespace
}  // namespace navora
