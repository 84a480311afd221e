#include <string>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"
#include "tests/support/Wait.h"

namespace navora::driver {
namespace {

class DebugLogTest : public TestPageTest {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.environment = {{"NAVORA_DEBUG", "navigation"}}};
  }

  void waitForLine(const std::string& line) {
    waitUntil([&] { return application().errorText().find(line) != std::string::npos; },
              "the line: " + line);
  }
};

TEST_F(DebugLogTest, TellsWhyANavigationWasRefused) {
  openTestPage("matrix.html");
  page().click("#script-foreign");
  waitForLine("Refused " + foreign().url("/page") +
              ": a foreign address needs a clicked link or a request for a new window");
  page().click("#custom");
  waitForLine("Refused custom:payload: the address is of a kind that other programs are not given");
}

TEST_F(DebugLogTest, TellsThatALinkLeftTheApplication) {
  openTestPage("matrix.html");
  page().click("#foreign");
  waitForLine("Opening in another program: " + foreign().url("/page"));
}

}  // namespace
}  // namespace navora::driver
