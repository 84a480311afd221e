#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "end_to_end/driver/EndToEndTest.h"
#include "tests/support/Files.h"
#include "tests/support/Tcp.h"

namespace navora::driver {
namespace {

// A service whose first page downloads a file, of which the second half arrives when the test says
// so.
class InterruptedDownloadTest : public EndToEndTest {
 protected:
  enum class Ending { complete, cutOff };

  void SetUp() override {
    std::filesystem::remove_all(folder());
    std::filesystem::create_directories(folder());
    EndToEndTest::SetUp();
    application().start();
    desktop().display().waitUntilActive(application().waitForMainWindow().id);
  }
  void TearDown() override {
    if (!ended_) end(Ending::cutOff);
    EndToEndTest::TearDown();
  }
  bool startsApplication() const override { return false; }
  std::string applicationUrl() const override { return server_.url(); }

  std::filesystem::path folder() { return desktop().home() / "saved"; }
  std::filesystem::path target() { return folder() / "file.zip"; }
  std::vector<std::filesystem::path> pieces() {
    std::vector<std::filesystem::path> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder())) {
      if (entry.path() != target()) all.push_back(entry.path());
    }
    return all;
  }
  static std::string content() { return std::string(1'000'000, 'n'); }

  // Chooses the file in the save panel.
  void chooseFile(const std::filesystem::path& file) {
    const auto chooser = widget("file chooser");
    desktop().accessibility().waitFor({.role = "text"}, chooser).setText(file.string());
    desktop().accessibility().waitFor({.role = "push button", .name = "Save"}, chooser).press();
  }
  // Saves the first half in place of an old file.
  void replaceOldFile() {
    writeFile(target(), "the old content");
    chooseFile(target());
    widget("push button", "Replace").press();
    waitUntil([&] { return !pieces().empty(); }, "the download is written aside");
    desktop().display().waitUntilActive(application().waitForMainWindow().id);
  }
  void end(Ending ending) {
    ended_ = true;
    ending_.set_value(ending);
  }
  void expectFailureAlert() {
    widget("label", "Couldn’t download the file");
    widget("push button", "OK").press();
  }
  void expectOldFile() { EXPECT_EQ(readFile(target()), "the old content"); }

 private:
  void serve(TcpConnection& connection) {
    const std::string head = connection.readHead();
    if (head.starts_with("GET /login ")) {
      connection.send(
          "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n"
          "<!doctype html><title>Downloading</title><script>location.href = '/file.zip'</script>");
    } else if (head.starts_with("GET /file.zip ")) {
      const std::size_t half = content().size() / 2;
      connection.send(
          "HTTP/1.1 200 OK\r\nContent-Type: application/zip\r\nConnection: close\r\n"
          "Content-Length: " +
          std::to_string(content().size()) + "\r\n\r\n" + content().substr(half));
      if (end_.get() == Ending::complete) connection.send(content().substr(0, half));
    } else {
      connection.send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    }
  }

  bool ended_ = false;
  std::promise<Ending> ending_;
  std::shared_future<Ending> end_ = ending_.get_future().share();
  TcpServer server_{[this](TcpConnection& connection) { serve(connection); }};
};

TEST_F(InterruptedDownloadTest, ReplacesAFileOnlyWhenItIsComplete) {
  replaceOldFile();
  expectOldFile();
  end(Ending::complete);
  waitUntil([&] { return readFile(target()) == content(); }, "the new file is in place");
  waitUntil([&] { return pieces().empty(); }, "nothing is left over");
  EXPECT_FALSE(hasWidget("alert"));
}

TEST_F(InterruptedDownloadTest, IsReportedAndLeavesTheOldFileWhenItIsCutOff) {
  replaceOldFile();
  end(Ending::cutOff);
  expectFailureAlert();
  expectOldFile();
  EXPECT_TRUE(pieces().empty());
}

TEST_F(InterruptedDownloadTest, IsReportedAndLeavesNothingWhenItIsCutOff) {
  chooseFile(target());
  waitUntil([&] { return !pieces().empty(); }, "the download is written aside");
  EXPECT_FALSE(std::filesystem::exists(target()));
  end(Ending::cutOff);
  expectFailureAlert();
  EXPECT_FALSE(std::filesystem::exists(target()));
  EXPECT_TRUE(pieces().empty());
}

TEST_F(InterruptedDownloadTest, LeavesTheOldFileAndNothingElseWhenTheApplicationQuits) {
  replaceOldFile();
  desktop().keyboard().chord("Control+q");
  EXPECT_EQ(application().process().wait().code, 0);
  expectOldFile();
  EXPECT_TRUE(pieces().empty());
}

TEST_F(InterruptedDownloadTest, LeavesTheOldFileAndNothingElseWhenTheApplicationIsTerminated) {
  replaceOldFile();
  application().process().signal(SIGTERM);
  application().process().wait();
  expectOldFile();
  EXPECT_TRUE(pieces().empty());
}

TEST_F(InterruptedDownloadTest, LeavesTheOldFileWhenTheApplicationIsKilled) {
  replaceOldFile();
  application().process().kill();
  expectOldFile();
  ASSERT_EQ(pieces().size(), 1U);
  EXPECT_TRUE(pieces().front().filename().string().starts_with(".navora-download-"));
}

TEST_F(InterruptedDownloadTest, IsReportedWhereNoFileCanBeWritten) {
  // Not even root can.
  chooseFile("/proc/file.zip");
  expectFailureAlert();
}

}  // namespace
}  // namespace navora::driver
