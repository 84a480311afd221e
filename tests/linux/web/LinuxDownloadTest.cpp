#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "linux/web/WebViewTest.h"
#include "platform/Download.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Records what a download asks and reports, and saves it in a folder of the test.
class RecordedDownloads final : public DownloadDelegate {
 public:
  explicit RecordedDownloads(std::filesystem::path file) : file_(std::move(file)) {}

  void decideDestination(Download&, const std::optional<Url>& responseUrl, const std::string& name,
                         DestinationCompletion completion) override {
    responses.push_back(responseUrl);
    names.push_back(name);
    completion(file_);
  }
  bool allowsRedirect(Download&, const std::optional<Url>&) override { return false; }
  void downloadDidFinish(Download&) override { ++finished; }
  void downloadDidFail(Download&, const PlatformError& error) override {
    failures.push_back(error);
  }
  bool ended() const { return finished > 0 || !failures.empty(); }

  std::vector<std::optional<Url>> responses;
  std::vector<std::string> names;
  int finished = 0;
  std::vector<PlatformError> failures;

 private:
  std::filesystem::path file_;
};

class LinuxDownloadTest : public WebViewTest {
 protected:
  // Replies with this status line, these headers, and a body, and closes the connection.
  void serve(const std::string& headers, const std::string& body) {
    server_.serve(
        "/file",
        {.body = body, .head = "HTTP/1.1 200 OK\r\nContent-Type: application/zip\r\n" + headers});
  }
  // Downloads /file and waits until that has ended.
  testing::AssertionResult download() {
    if (!view_) makeView();
    navigation_.onDownload = [this](std::shared_ptr<Download> started) {
      started->setDelegate(&downloads_);
      download_ = std::move(started);
    };
    navigation_.decide = [](const NavigationAction&) { return NavigationPolicy::download; };
    view_->load({.url = testUrl(server_.url("/file"))});
    return waitUntil([this] { return downloads_.ended(); });
  }
  void expectConnectionLost() {
    EXPECT_EQ(downloads_.finished, 0);
    ASSERT_EQ(downloads_.failures.size(), 1U);
    EXPECT_NE(downloads_.failures[0].code, PlatformError::cancelledCode);
    EXPECT_FALSE(downloads_.failures[0].localizedDescription.empty());
  }

  TemporaryDirectory folder_;
  const std::filesystem::path file_ = folder_.path() / "content";
  RecordedDownloads downloads_{file_};
  std::shared_ptr<Download> download_;
};

// One byte, "a".
const std::string shortGzip("\x1f\x8b\x08\0\0\0\0\0\0\x03\x4b\x04\0\x43\xbe\xb7\xe8\x01\0\0\0", 21);
// The begin of 60,000 bytes that are stored uncompressed.
const std::string storedGzip =
    std::string("\x1f\x8b\x08\0\0\0\0\0\0\x03\x01\x60\xea\x9f\x15", 15) + std::string(10'000, 'x');

TEST_F(LinuxDownloadTest, FinishesWithAllOfItsContent) {
  serve("Content-Length: 11\r\n", "the content");
  ASSERT_TRUE(download());
  EXPECT_EQ(downloads_.finished, 1);
  EXPECT_THAT(downloads_.failures, IsEmpty());
  EXPECT_EQ(readFile(file_), "the content");
  EXPECT_THAT(downloads_.responses, ElementsAre(testUrl(server_.url("/file"))));
}

TEST_F(LinuxDownloadTest, FailsIfTheConnectionIsCutOff) {
  serve("Content-Length: 1000000\r\n", std::string(1000, 'x'));
  ASSERT_TRUE(download());
  expectConnectionLost();
}

TEST_F(LinuxDownloadTest, FailsIfTheConnectionIsCutOffAtTheLastByte) {
  serve("Content-Length: 12\r\n", "the content");
  ASSERT_TRUE(download());
  expectConnectionLost();
}

TEST_F(LinuxDownloadTest, FailsIfNothingArrives) {
  serve("Content-Length: 12\r\n", "");
  ASSERT_TRUE(download());
  expectConnectionLost();
}

TEST_F(LinuxDownloadTest, FinishesWithoutAnAnnouncedLength) {
  serve("", "the content");
  ASSERT_TRUE(download());
  EXPECT_EQ(downloads_.finished, 1);
  EXPECT_EQ(readFile(file_), "the content");
}

TEST_F(LinuxDownloadTest, FinishesEmpty) {
  serve("Content-Length: 0\r\n", "");
  ASSERT_TRUE(download());
  EXPECT_EQ(downloads_.finished, 1);
}

// Its compressed form is longer than its content.
TEST_F(LinuxDownloadTest, FinishesCompressed) {
  serve("Content-Encoding: gzip\r\nContent-Length: 21\r\n", shortGzip);
  ASSERT_TRUE(download());
  EXPECT_EQ(downloads_.finished, 1);
  EXPECT_EQ(readFile(file_), "a");
}

TEST_F(LinuxDownloadTest, FailsIfACompressedConnectionIsCutOff) {
  serve("Content-Encoding: gzip\r\nContent-Length: 60023\r\n", storedGzip);
  ASSERT_TRUE(download());
  expectConnectionLost();
}

// The application asked for the download itself, so the engine follows every redirect.
TEST_F(LinuxDownloadTest, TellsWhereItsContentComesFrom) {
  HttpServer other;
  other.serve("/stored", {.body = "foreign", .contentType = "application/zip"});
  server_.serve("/file",
                {.body = {}, .status = 302, .headers = {{"Location", other.url("/stored")}}});
  ASSERT_TRUE(download());
  EXPECT_THAT(downloads_.responses, ElementsAre(testUrl(other.url("/stored"))));
}

}  // namespace
}  // namespace navora
