#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "ServiceHarness.h"
#include "service/storage/CaptureChanges.h"

namespace navora::service::tests {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(CaptureChangesStore, WaitEndsWithTheChangeOfThisUserOnly) {
  CaptureChanges changes;
  const auto known = changes.version("ann");
  changes.raise("bo");
  EXPECT_EQ(changes.wait("ann", known, milliseconds(1)), known);
  std::thread writer([&] { changes.raise("ann"); });
  EXPECT_EQ(changes.wait("ann", known, seconds(20)), known + 1);
  writer.join();
}

TEST(CaptureChangesStore, ChangeBeforeTheWaitIsNotMissed) {
  CaptureChanges changes;
  const auto known = changes.version("ann");
  changes.raise("ann");
  EXPECT_EQ(changes.wait("ann", known, seconds(20)), known + 1);
}

TEST(CaptureChangesStore, OldestWaitEndsWhenTooManyWait) {
  CaptureChanges changes;
  const auto known = changes.version("ann");
  std::atomic<int> ended = 0;
  std::vector<std::thread> waiters;
  for (std::size_t count = 0; count <= CaptureChanges::mostWaiters; ++count) {
    waiters.emplace_back([&] {
      changes.wait("ann", known, seconds(50));
      ++ended;
      ended.notify_all();
    });
  }
  ended.wait(0);
  EXPECT_EQ(ended, 1);
  changes.close();
  for (std::thread& waiter : waiters)
    waiter.join();
  EXPECT_EQ(changes.wait("ann", known, seconds(50)), known);
}

class CaptureChangesRoute : public ServiceTest {
 protected:
  void SetUp() override {
    start({"--test", "--job-delay", "3600000"});
    client->signIn();
  }

  Json version() { return client->get("/api/captures").json()["version"]; }

  HttpReply changesAfter(const Json& version) {
    return client->get("/api/captures/changes?after=" + version.dump());
  }
};

TEST_F(CaptureChangesRoute, EveryKindOfChangeMakesANewVersion) {
  const Json empty = version();
  const Json accepted = client->sendJson("POST", "/api/captures", {{"raw", "x"}}).json();
  const Json added = changesAfter(empty).json()["version"];
  EXPECT_GT(added, empty);
  const std::string note = "/api/captures/" + accepted["captureId"].get<std::string>();
  client->request("POST", note + "/attachments?name=a", "b",
                  {{"Content-Type", "application/octet-stream"}});
  const Json attached = changesAfter(added).json()["version"];
  EXPECT_GT(attached, added);
  client->request("DELETE", note);
  EXPECT_GT(changesAfter(attached).json()["version"], attached);
}

TEST_F(CaptureChangesRoute, AnswersWhenAnotherClientStoresANote) {
  const Json known = version();
  const TcpConnection waiting = TcpConnection::connect(client->port());
  waiting.send(client->requestBytes("GET", "/api/captures/changes?after=" + known.dump()));
  client->get("/__test/requests?path=/api/captures/changes&count=1&timeout=5000");
  EXPECT_FALSE(waiting.readable(100));
  client->sendJson("POST", "/api/captures", {{"raw", "x"}});
  EXPECT_GT(HttpReply::parse(waiting.receiveAll()).json()["version"], known);
}

TEST_F(CaptureChangesRoute, DoesNotKeepTheServiceFromStopping) {
  const TcpConnection waiting = TcpConnection::connect(client->port());
  waiting.send(client->requestBytes("GET", "/api/captures/changes?after=" + version().dump()));
  client->get("/__test/requests?path=/api/captures/changes&count=1&timeout=5000");
  const auto begin = std::chrono::steady_clock::now();
  service->stop();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, seconds(10));
}

TEST_F(CaptureChangesRoute, RefusesAnInvalidVersion) {
  for (const char* version : {"", "x", "1x", "-1"}) {
    EXPECT_EQ(client->get(std::string("/api/captures/changes?after=") + version).status, 400)
        << version;
  }
  client->cookie.clear();
  EXPECT_EQ(client->get("/api/captures/changes?after=1").status, 401);
}

TEST(CaptureChangesOfAJob, EndOfTheJobIsAChange) {
  Service service(plainOptions({"--job-delay", "200"}));
  ASSERT_FALSE(service.start());
  SessionClient client(service.port());
  client.signIn();
  client.sendJson("POST", "/api/captures", {{"raw", "x"}});
  Json list = client.get("/api/captures").json();
  while (list["captures"][0]["state"] != "done") {
    client.get("/api/captures/changes?after=" + list["version"].dump());
    const Json next = client.get("/api/captures").json();
    ASSERT_NE(next["version"], list["version"]);
    list = next;
  }
}

}  // namespace
}  // namespace navora::service::tests
