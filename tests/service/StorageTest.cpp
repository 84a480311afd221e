#include <chrono>

#include "ServiceHarness.h"
#include "service/storage/Storage.h"

namespace navora::service::tests {
namespace {

TEST(Storage, NotesSettingsAndSessionsSurviveARestart) {
  const TemporaryDirectory directory;
  const std::vector<std::string> arguments{"--database", directory.path() / "notes.db"};
  std::string cookie;
  {
    Service service(plainOptions(arguments));
    ASSERT_FALSE(service.start());
    SessionClient client(service.port());
    client.signIn();
    cookie = client.cookie;
    client.sendJson("POST", "/api/captures", {{"raw", "kept"}}, {{"Idempotency-Key", "k"}});
    client.sendJson("PUT", "/api/settings", {{"theme", "dark"}});
  }
  Service service(plainOptions(arguments));
  ASSERT_FALSE(service.start());
  SessionClient client(service.port());
  client.cookie = cookie;
  EXPECT_EQ(client.get("/api/captures").json()["captures"][0]["raw"], "kept");
  EXPECT_EQ(client.get("/api/settings").json()["settings"]["theme"], "dark");
  const HttpReply other =
      client.sendJson("POST", "/api/captures", {{"raw", "else"}}, {{"Idempotency-Key", "k"}});
  EXPECT_EQ(other.status, 409);
}

TEST(Storage, UnusableDatabaseIsReportedAtStart) {
  Service service(plainOptions({"--database", "/nowhere/at/all/notes.db"}));
  const auto problem = service.start();
  ASSERT_TRUE(problem);
  EXPECT_THAT(*problem, testing::HasSubstr("/nowhere/at/all/notes.db"));
}

TEST(Storage, ExpiredSessionIsNoSession) {
  service::Storage storage(":memory:", {{"demo", "demo"}});
  const auto token = storage.accounts.signIn("demo", "demo");
  ASSERT_TRUE(token);
  EXPECT_TRUE(storage.accounts.sessionUser(*token));
  storage.database.run("UPDATE sessions SET expires_at = ?", currentTime());
  EXPECT_FALSE(storage.accounts.sessionUser(*token));
}

TEST(Storage, JobIsFinishedOnceItIsDueAndOnlyOnce) {
  service::Storage storage(":memory:", {});
  const User user = storage.accounts.user("demo");
  const auto accepted = storage.captures.add(user.id, {"x", {}, {}, {}}, 5000);
  ASSERT_TRUE(accepted);
  EXPECT_EQ(storage.captures.finishDueJobs(4999), 5000);
  EXPECT_EQ((*storage.captures.job(user.id, accepted->jobId))["state"], "running");
  EXPECT_EQ(storage.captures.finishDueJobs(5000), std::nullopt);
  EXPECT_EQ((*storage.captures.job(user.id, accepted->jobId))["state"], "done");
  storage.captures.finishDueJobs(6000);
  EXPECT_EQ(storage.notifications.list(user.id).size(), 1U);
}

TEST(Storage, TransactionThatIsNotCommittedLeavesNothing) {
  service::Storage storage(":memory:", {});
  {
    const Database::Transaction outer(storage.database);
    storage.accounts.user("ann");
  }
  Database::Transaction transaction(storage.database);
  Statement row = storage.database.prepare("SELECT count(*) FROM users");
  ASSERT_TRUE(row.step());
  EXPECT_EQ(row.integer(0), 0);
}

TEST(Storage, InnerFailureKeepsTheOuterTransactionFromCommitting) {
  service::Storage storage(":memory:", {});
  Database::Transaction outer(storage.database);
  {
    const Database::Transaction inner(storage.database);
  }
  EXPECT_THROW(outer.commit(), DatabaseError);
}

}  // namespace
}  // namespace navora::service::tests
