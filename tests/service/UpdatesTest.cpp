#include <chrono>
#include <filesystem>
#include <fstream>

#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* feedPath = "/updates/appcast.xml";
constexpr const char* archivePath = "/updates/Navora-2.tar.xz";

// Returns the peak resident size of this process in bytes.
std::size_t peakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stoull(line.substr(6)) * 1024;
  }
  ADD_FAILURE() << "the system does not say";
  return 0;
}

class Updates : public ServiceTest {
 protected:
  void SetUp() override {
    writeFile(updates.path() / "appcast.xml", feed);
    writeFile(updates.path() / "Navora-2.tar.xz", archive);
  }

  void serve(std::vector<std::string> more = {}) {
    more.insert(more.end(), {"--updates", updates.path()});
    start(std::move(more));
  }

  void add(const Json& action, const std::string& path) const {
    const Json rule{{"path", path}, {"action", action}};
    EXPECT_EQ(client->sendJson("POST", "/__test/faults", rule).status, 204) << rule;
  }

  // Creates a sparse file of this size.
  void writeLarge(const std::string& name, std::uintmax_t size) const {
    writeFile(updates.path() / name, "");
    std::filesystem::resize_file(updates.path() / name, size);
  }

  const std::string feed = "<?xml version=\"1.0\"?><rss version=\"2.0\"/>\n";
  const std::string archive = std::string("\xFD\x00\r\n\xFF", 5) + std::string(200000, 'a') + "end";
  TemporaryDirectory updates;
};

TEST_F(Updates, FeedIsServedAsItIsWithoutASession) {
  serve();
  const HttpReply reply = client->get(feedPath, {{"Accept-Encoding", "gzip, br"}});
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.header("Content-Type"), "application/xml");
  EXPECT_EQ(reply.header("Cache-Control"), "no-store");
  EXPECT_EQ(reply.header("Content-Encoding"), "");
  EXPECT_EQ(reply.header("Content-Length"), std::to_string(feed.size()));
  EXPECT_EQ(reply.body, feed);
}

TEST_F(Updates, ArchiveIsServedAsItIsInEitherMode) {
  for (const std::vector<std::string>& mode : {std::vector<std::string>{}, {"--test"}}) {
    serve(mode);
    const HttpReply reply = client->get(archivePath, {{"Accept-Encoding", "gzip, br"}});
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.header("Content-Type"), "application/octet-stream");
    EXPECT_EQ(reply.header("Content-Encoding"), "");
    EXPECT_EQ(reply.header("Content-Length"), std::to_string(archive.size()));
    EXPECT_TRUE(reply.body == archive);
  }
}

TEST_F(Updates, HeadSendsTheLengthAndNoBody) {
  for (const std::vector<std::string>& mode : {std::vector<std::string>{}, {"--test"}}) {
    serve(mode);
    for (const auto& [path, size] : {std::pair(feedPath, feed.size()), {archivePath, 200008U}}) {
      const HttpReply reply = client->request("HEAD", path);
      EXPECT_EQ(reply.status, 200) << path;
      EXPECT_EQ(reply.header("Content-Length"), std::to_string(size)) << path;
      EXPECT_EQ(reply.body, "") << path;
    }
  }
}

TEST_F(Updates, FilesAreReadAfreshForEachRequest) {
  serve();
  writeFile(updates.path() / "appcast.xml", "<rss/>");
  EXPECT_EQ(client->get(feedPath).body, "<rss/>");
  writeFile(updates.path() / "new one.zip", "x");
  EXPECT_EQ(client->get("/updates/new%20one.zip").body, "x");
  writeFile(updates.path() / "empty", "");
  const HttpReply empty = client->get("/updates/empty");
  EXPECT_EQ(empty.status, 200);
  EXPECT_EQ(empty.header("Content-Length"), "0");
}

TEST_F(Updates, NothingButTheFilesOfTheDirectoryIsServed) {
  writeFile(updates.path() / ".hidden", "secret");
  std::filesystem::create_directory(updates.path() / "deep");
  writeFile(updates.path() / "deep/file", "secret");
  TemporaryDirectory elsewhere;
  writeFile(elsewhere.path() / "secret", "secret");
  std::filesystem::create_symlink(elsewhere.path() / "secret", updates.path() / "link");
  const std::string neighbour = elsewhere.path().filename();
  serve();
  for (const std::string& path :
       {std::string("/updates/.hidden"), std::string("/updates/deep"),
        std::string("/updates/deep/file"), std::string("/updates/deep%2Ffile"),
        std::string("/updates/link"), std::string("/updates/"), std::string("/updates"),
        std::string("/updates/."), std::string("/updates/.."), std::string("/updates/absent"),
        "/updates/../" + neighbour + "/secret", "/updates/%2e%2e%2f" + neighbour + "%2fsecret",
        std::string("/updates/..%5Csecret"), std::string("/updates//appcast.xml"),
        std::string("/updates/appcast.xml%00.zip")}) {
    const HttpReply reply = client->get(path);
    EXPECT_EQ(reply.status, 404) << path;
    EXPECT_THAT(reply.body, Not(HasSubstr("secret"))) << path;
  }
  EXPECT_EQ(client->request("POST", feedPath, "x").status, 404);
}

TEST_F(Updates, DirectoryWithoutAFeedRepliesWithNotFound) {
  std::filesystem::remove(updates.path() / "appcast.xml");
  serve();
  EXPECT_EQ(client->get(feedPath).status, 404);
}

TEST_F(Updates, WithoutADirectoryThereIsAFeedWithoutItems) {
  start();
  const HttpReply reply = client->get(feedPath);
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.header("Content-Type"), "application/xml");
  EXPECT_EQ(reply.header("Cache-Control"), "no-store");
  EXPECT_THAT(reply.body,
              StartsWith("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<rss version=\"2.0\">"));
  // The elements that RSS 2.0 requires in a channel.
  for (const char* part : {"<channel>", "<title>", "<link>", "<description>", "</rss>"}) {
    EXPECT_THAT(reply.body, HasSubstr(part));
  }
  EXPECT_THAT(reply.body, Not(HasSubstr("<item")));
  EXPECT_EQ(client->get("/updates/passwd").status, 404);
  EXPECT_EQ(client->request("HEAD", feedPath).header("Content-Length"),
            std::to_string(reply.body.size()));
}

// The client runs in the same process, so it must not keep the data either.
TEST_F(Updates, LargeArchiveIsNeverWhollyInMemory) {
  constexpr std::uintmax_t size = 100 * 1024 * 1024;
  writeLarge("large", size);
  for (const std::vector<std::string>& mode : {std::vector<std::string>{}, {"--test"}}) {
    serve(mode);
    client->get(feedPath);
    std::ofstream("/proc/self/clear_refs") << "5";  // The peak begins anew.
    const std::size_t before = peakMemory();
    const TcpConnection connection = TcpConnection::connect(client->port());
    connection.send(client->requestBytes("GET", "/updates/large"));
    const std::string head = connection.receiveSome();
    const std::size_t received = head.size() + connection.discardAll();
    EXPECT_THAT(head, HasSubstr("Content-Length: " + std::to_string(size)));
    EXPECT_EQ(received, head.find("\r\n\r\n") + 4 + size);
    EXPECT_LT(peakMemory() - before, size / 4);
  }
}

TEST_F(Updates, ArchiveThatIsReplacedMeanwhileIsSentAsItWas) {
  writeLarge("large", 32 * 1024 * 1024);
  serve();
  const TcpConnection connection = TcpConnection::connect(client->port());
  connection.send(client->requestBytes("GET", "/updates/large"));
  const std::string beginning = connection.receiveSome();
  writeFile(updates.path() / "next", "other");
  std::filesystem::rename(updates.path() / "next", updates.path() / "large");
  const HttpReply reply = HttpReply::parse(beginning + connection.receiveAll());
  EXPECT_EQ(reply.body.size(), 32U * 1024 * 1024);
  EXPECT_EQ(client->get("/updates/large").body, "other");
}

TEST_F(Updates, ClientThatDisconnectsDoesNotKeepTheServiceFromStopping) {
  writeLarge("large", 512 * 1024 * 1024);
  for (const std::vector<std::string>& mode : {std::vector<std::string>{}, {"--test"}}) {
    serve(mode);
    {
      const TcpConnection closed = TcpConnection::connect(client->port());
      closed.send(client->requestBytes("GET", "/updates/large"));
      closed.receiveSome();
    }
    const auto begin = std::chrono::steady_clock::now();
    service->stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
  }
}

class UpdateFaults : public Updates, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    Updates::SetUp();
    serve({"--test"});
  }

  std::string path() const { return GetParam(); }
  const std::string& content() const { return path() == feedPath ? feed : archive; }
  HttpReply get() { return client->get(path()); }
};

TEST_P(UpdateFaults, DelayComesBeforeTheFile) {
  add({{"delay", 300}}, path());
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_TRUE(get().body == content());
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(300));
}

TEST_P(UpdateFaults, TruncationPromisesTheWholeLength) {
  for (const std::size_t bytes : {std::size_t{0}, std::size_t{7}, content().size() - 1}) {
    add({{"drop", "during"}, {"bytes", bytes}}, path());
    const HttpReply reply = get();
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.header("Content-Length"), std::to_string(content().size()));
    EXPECT_TRUE(reply.body == content().substr(0, bytes)) << bytes;
  }
  EXPECT_TRUE(get().body == content());
}

TEST_P(UpdateFaults, ConnectionIsDroppedBeforeAndAfter) {
  for (const char* moment : {"before", "after"}) {
    add({{"drop", moment}}, path());
    EXPECT_EQ(get().bytes, "") << moment;
  }
  EXPECT_EQ(get().status, 200);
}

TEST_P(UpdateFaults, StatusReplacesTheFile) {
  for (const int status : {304, 404, 500, 503}) {
    add({{"status", status}}, path());
    EXPECT_EQ(get().status, status);
  }
}

TEST_P(UpdateFaults, FileComesInPieces) {
  const std::size_t piece = content().size() / 4 + 1;
  add({{"slow", {{"bytes", piece}, {"interval", 30}}}}, path());
  const auto begin = std::chrono::steady_clock::now();
  const HttpReply reply = get();
  EXPECT_TRUE(reply.body == content());
  const auto pauses = static_cast<int>((reply.bytes.size() - 1) / piece);
  EXPECT_GE(pauses, 3);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30 * pauses));
}

TEST_P(UpdateFaults, RedirectLeadsToAnotherSite) {
  add({{"redirect", "https://elsewhere.example/file"}}, path());
  const HttpReply reply = get();
  EXPECT_EQ(reply.status, 302);
  EXPECT_EQ(reply.header("Location"), "https://elsewhere.example/file");
}

TEST_P(UpdateFaults, HeadIsAFaultyRequestLikeOthers) {
  add({{"status", 500}, {"body", "no"}}, path());
  const HttpReply reply = client->request("HEAD", path());
  EXPECT_EQ(reply.status, 500);
  EXPECT_EQ(reply.body, "");
}

INSTANTIATE_TEST_SUITE_P(Files, UpdateFaults, testing::Values(feedPath, archivePath),
                         [](const auto& file) {
                           return std::string(file.param == feedPath ? "Feed" : "Archive");
                         });

}  // namespace
}  // namespace navora::service::tests
