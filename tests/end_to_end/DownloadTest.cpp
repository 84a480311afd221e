#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

class DownloadTest : public TestPageTest {
 protected:
  void SetUp() override {
    TestPageTest::SetUp();
    if (!HasFatalFailure()) openTestPage("downloads.html");
  }

  void serveFile(const std::string& disposition) {
    serviceClient().addFault("GET", "/file",
                             {{"status", 200},
                              {"contentType", "application/zip"},
                              {"headers", Json::array({{"Content-Disposition", disposition}})},
                              {"body", "the content"}});
  }

  std::filesystem::path target() { return desktop().home() / "saved.zip"; }

  void saveAs(const std::filesystem::path& file) {
    const auto chooser = widget("file chooser");
    desktop().accessibility().waitFor({.role = "text"}, chooser).setText(file.string());
    desktop().accessibility().waitFor({.role = "push button", .name = "Save"}, chooser).press();
  }

  void expectFailureAlert() {
    widget("label", "Couldn’t download the file");
    widget("push button", "OK").press();
    waitUntil([&] { return !hasWidget("alert"); }, "the alert is closed");
    EXPECT_EQ(page().path(), "/__test/pages/downloads.html");
  }
};

TEST_F(DownloadTest, SavesADownloadLinkWhereTheUserChooses) {
  serveFile("attachment; filename=\"reports/2024/summary.zip\"");
  page().click("#download");
  const auto chooser = widget("file chooser");
  const auto name = desktop().accessibility().waitFor({.role = "text"}, chooser);
  waitUntil([&] { return name.text() == "summary.zip"; }, "the suggested name is the file's own");
  saveAs(target());
  waitUntil([&] { return readFile(target()) == "the content"; }, "the file is saved");
  EXPECT_FALSE(hasWidget("alert"));
}

TEST_F(DownloadTest, SavesAReplyThatTheViewCannotShow) {
  serveFile("inline");
  page().click("#archive");
  saveAs(target());
  waitUntil([&] { return readFile(target()) == "the content"; }, "the file is saved");
  EXPECT_FALSE(hasWidget("label", "Navora is unavailable right now"));
}

TEST_F(DownloadTest, ReportsADownloadThatTheUserCancels) {
  serveFile("attachment");
  page().click("#download");
  const auto chooser = widget("file chooser");
  desktop().accessibility().waitFor({.role = "push button", .name = "Cancel"}, chooser).press();
  expectFailureAlert();
}

TEST_F(DownloadTest, RefusesARedirectToAForeignHostAndReportsIt) {
  serviceClient().addFault("GET", "/file", {{"redirect", foreign().url("/stored.zip")}});
  page().click("#download");
  expectFailureAlert();
  EXPECT_TRUE(foreign().requests().empty());
}

// Downloads that a link announces but the engine does not take for its own: it would follow their
// redirects.
class AnnouncedDownloadTest : public DownloadTest {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.environment = {{"NAVORA_DEBUG", "navigation"}}};
  }
  void SetUp() override {
    DownloadTest::SetUp();
    serviceClient().addFault("GET", "/file", {{"redirect", foreign().url("/stored.zip")}});
  }

  void expectRefusedRedirect() {
    const std::string line = "Refused " + foreign().url("/stored.zip") + ":";
    waitUntil([&] { return application().errorText().find(line) != std::string::npos; },
              "the redirect is refused");
    EXPECT_EQ(describe(foreign().requests()), "");
    EXPECT_FALSE(hasWidget("file chooser"));
  }
};

TEST_F(AnnouncedDownloadTest, OfASandboxedFrameFollowsNoRedirectToAForeignHost) {
  page().frame("#inner", "inner").click("#download");
  expectRefusedRedirect();
}

TEST_F(AnnouncedDownloadTest, OfADrawingFollowsNoRedirectToAForeignHost) {
  page().click("#drawn");
  expectRefusedRedirect();
}

TEST_F(AnnouncedDownloadTest, OpenedFromTheContextMenuFollowsNoRedirectToAForeignHost) {
  page().click("#download", MouseButton::right);
  widget("menu item", "Open Link").press();
  expectRefusedRedirect();
}

TEST_F(DownloadTest, SavesADownloadLinkOfASandboxedFrame) {
  serveFile("inline");
  page().frame("#inner", "inner").click("#download");
  saveAs(target());
  waitUntil([&] { return readFile(target()) == "the content"; }, "the file is saved");
}

TEST_F(DownloadTest, FollowsARedirectWithinTheOrigin) {
  serviceClient().addFault("GET", "/file", {{"redirect", "/other"}});
  serviceClient().addFault(
      "GET", "/other",
      {{"status", 200}, {"contentType", "application/zip"}, {"body", "the content"}});
  page().click("#download");
  saveAs(target());
  waitUntil([&] { return readFile(target()) == "the content"; }, "the file is saved");
}

TEST_F(DownloadTest, ReportsABrokenConnection) {
  serviceClient().addFault("GET", "/file", {{"drop", "before"}});
  page().click("#download");
  expectFailureAlert();
}

}  // namespace
}  // namespace navora::driver
