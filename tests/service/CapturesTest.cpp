#include <set>
#include <thread>

#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

using testing::HasSubstr;

class Captures : public ServiceTest {
 protected:
  void SetUp() override {
    start();
    client->signIn();
  }

  HttpReply post(const Json& body, const std::string& key = "") {
    HttpHeaders headers;
    if (!key.empty()) headers.emplace_back("Idempotency-Key", key);
    return client->sendJson("POST", "/api/captures", body, headers);
  }

  Json notes() { return client->get("/api/captures").json()["captures"]; }
};

TEST_F(Captures, NoteIsAcceptedWithAJobOnThisService) {
  const HttpReply reply =
      post({{"raw", "  Buy tea \n"}, {"provider", "openai"}, {"model", "fast"}});
  EXPECT_EQ(reply.status, 202);
  const Json accepted = reply.json();
  EXPECT_THAT(accepted["captureId"].get<std::string>(),
              testing::MatchesRegex("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}"));
  EXPECT_EQ(accepted["statusUrl"], "/api/jobs/" + accepted["jobId"].get<std::string>());
  ASSERT_EQ(notes().size(), 1U);
  EXPECT_EQ(notes()[0]["raw"], "Buy tea");
  EXPECT_EQ(notes()[0]["provider"], "openai");
  EXPECT_EQ(notes()[0]["model"], "fast");
}

TEST_F(Captures, FinishedJobRaisesOneNotificationThatPointsToTheNote) {
  const Json accepted = post({{"raw", "First line\n\nsecond #garden"}}).json();
  const Json job = finishedJob(accepted["statusUrl"]);
  EXPECT_EQ(job["captureId"], accepted["captureId"]);
  EXPECT_EQ(job["title"], "First line");
  EXPECT_EQ(job["summary"], "4 words · 2 lines · #garden");
  const Json items = client->get("/api/notifications").json()["notifications"];
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0]["kind"], "capture_ready");
  EXPECT_EQ(items[0]["captureId"], accepted["captureId"]);
  EXPECT_EQ(items[0]["read"], false);
  EXPECT_EQ(items[0]["resolved"], false);
  EXPECT_TRUE(items[0]["id"].is_string());
}

TEST_F(Captures, NotificationsAreNewestFirstAndCanBeRead) {
  finishedJob(post({{"raw", "one"}}).json()["statusUrl"]);
  finishedJob(post({{"raw", "two"}}).json()["statusUrl"]);
  Json items = client->get("/api/notifications").json()["notifications"];
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[0]["text"], "two");
  const std::string id = items[1]["id"];
  EXPECT_EQ(client->request("POST", "/api/notifications/" + id + "/read").status, 200);
  items = client->get("/api/notifications").json()["notifications"];
  EXPECT_EQ(items[0]["read"], false);
  EXPECT_EQ(items[1]["read"], true);
  EXPECT_EQ(client->request("POST", "/api/notifications/none/read").status, 404);
  client->request("POST", "/api/notifications/read");
  EXPECT_EQ(client->get("/api/notifications").json()["notifications"][0]["read"], true);
}

TEST_F(Captures, SameKeyAndTextGiveTheSameCaptureAndJob) {
  const Json first = post({{"raw", "x"}}, "mac-1").json();
  const HttpReply again = post({{"raw", "x"}}, "mac-1");
  EXPECT_EQ(again.status, 202);
  EXPECT_EQ(again.json(), first);
  EXPECT_EQ(notes().size(), 1U);
}

TEST_F(Captures, SameKeyWithAnotherTextIsAConflict) {
  post({{"raw", "x"}}, "mac-1");
  const HttpReply reply = post({{"raw", "y"}}, "mac-1");
  EXPECT_EQ(reply.status, 409);
  EXPECT_TRUE(reply.json()["error"]["message"].is_string());
  EXPECT_EQ(notes().size(), 1U);
}

TEST_F(Captures, SameKeyWithAnotherProviderOrModelIsAConflict) {
  const Json note{{"raw", "x"}, {"provider", "openai"}, {"model", "fast"}};
  const Json first = post(note, "mac-1").json();
  EXPECT_EQ(post({{"raw", "x"}, {"provider", "gemini"}, {"model", "fast"}}, "mac-1").status, 409);
  EXPECT_EQ(post({{"raw", "x"}, {"provider", "openai"}}, "mac-1").status, 409);
  EXPECT_EQ(post(note, "mac-1").json(), first);
  EXPECT_EQ(notes().size(), 1U);
}

TEST_F(Captures, KeyOfADeletedNoteStillNamesIt) {
  const Json first = post({{"raw", "x"}}, "mac-1").json();
  client->request("DELETE", "/api/captures/" + first["captureId"].get<std::string>());
  EXPECT_EQ(post({{"raw", "x"}}, "mac-1").json(), first);
  EXPECT_EQ(notes().size(), 0U);
}

TEST_F(Captures, WithoutAKeyEveryPostIsANote) {
  post({{"raw", "x"}});
  post({{"raw", "x"}});
  EXPECT_EQ(notes().size(), 2U);
}

TEST_F(Captures, RacingDuplicatesStoreOneNote) {
  constexpr std::size_t racers = 12;
  std::vector<Json> replies(racers);
  std::vector<std::thread> threads;
  for (std::size_t index = 0; index < racers; ++index) {
    threads.emplace_back([this, &replies, index] {
      SessionClient racer(client->port());
      racer.cookie = client->cookie;
      replies[index] = racer
                           .sendJson("POST", "/api/captures", {{"raw", "race"}},
                                     {{"Idempotency-Key", "mac-race"}})
                           .json();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  std::set<std::string> answers;
  for (const Json& reply : replies)
    answers.insert(reply.dump());
  EXPECT_EQ(answers.size(), 1U);
  EXPECT_TRUE(replies[0].contains("captureId")) << replies[0];
  EXPECT_EQ(notes().size(), 1U);
}

TEST_F(Captures, LimitCountsUtf16Units) {
  std::string emoji;
  for (int count = 0; count < 5000; ++count)
    emoji += "\U0001F642";
  EXPECT_EQ(post({{"raw", emoji}}).status, 202);
  EXPECT_EQ(post({{"raw", emoji + "a"}}).status, 422);
  EXPECT_EQ(post({{"raw", std::string(10000, 'a')}}).status, 202);
  EXPECT_EQ(post({{"raw", std::string(10001, 'a')}}).status, 422);
}

TEST_F(Captures, RefusesInvalidNotes) {
  EXPECT_EQ(post({{"raw", " \n\t "}}).status, 422);
  EXPECT_EQ(post({{"raw", 5}}).status, 422);
  EXPECT_EQ(post(Json::object()).status, 422);
  EXPECT_EQ(post({{"raw", "x"}, {"provider", "unknown"}}).status, 422);
  EXPECT_EQ(post({{"raw", "x"}, {"model", 3}}).status, 422);
  EXPECT_EQ(post({{"raw", "x"}}, std::string(201, 'k')).status, 400);
  EXPECT_EQ(notes().size(), 0U);
}

TEST_F(Captures, TextComesBackExactly) {
  const std::string hostile = "<img src=x onerror=alert(1)> \"'&\\ \u2028 \U0001F642 \x01 z";
  post({{"raw", hostile}});
  EXPECT_EQ(notes()[0]["raw"], hostile);
}

TEST_F(Captures, DeletedNoteIsRemovedAndItsNotificationResolved) {
  const Json accepted = post({{"raw", "x"}}).json();
  finishedJob(accepted["statusUrl"]);
  const std::string id = accepted["captureId"];
  EXPECT_EQ(client->request("DELETE", "/api/captures/" + id).status, 204);
  EXPECT_EQ(client->request("DELETE", "/api/captures/" + id).status, 404);
  EXPECT_EQ(client->get(accepted["statusUrl"].get<std::string>()).status, 404);
  EXPECT_EQ(client->get("/api/notifications").json()["notifications"][0]["resolved"], true);
}

TEST_F(Captures, AttachmentIsDownloadedUnderItsName) {
  const std::string id = post({{"raw", "x"}}).json()["captureId"];
  const HttpHeaders bytes{{"Content-Type", "application/octet-stream"}};
  const std::string content("a\0\xFF<b>", 6);
  const HttpReply added = client->request(
      "POST", "/api/captures/" + id + "/attachments?name=..%2Fplan%20%C3%BC.html", content, bytes);
  ASSERT_EQ(added.status, 201);
  EXPECT_EQ(added.json()["attachment"]["name"], "plan ü.html");
  const std::string file = added.json()["attachment"]["id"];
  const HttpReply reply = client->get("/api/attachments/" + file);
  EXPECT_EQ(reply.body, content);
  EXPECT_EQ(reply.header("Content-Type"), "application/octet-stream");
  EXPECT_EQ(reply.header("Content-Disposition"), "attachment; filename*=UTF-8''plan%20%C3%BC.html");
  EXPECT_EQ(notes()[0]["attachments"][0]["size"], 6);
}

TEST_F(Captures, ExportsAreDownloads) {
  post({{"raw", "to keep"}});
  const HttpReply json = client->get("/api/export");
  EXPECT_EQ(json.header("Content-Disposition"), "attachment; filename=\"navora-notes.json\"");
  EXPECT_EQ(json.json()["notes"][0]["raw"], "to keep");
  const HttpReply zip = client->get("/api/export/navora-notes.zip");
  EXPECT_EQ(zip.header("Content-Type"), "application/zip");
  EXPECT_EQ(zip.header("Content-Disposition"), "");
  EXPECT_THAT(zip.body, testing::StartsWith("PK"));
  EXPECT_THAT(zip.body, HasSubstr("to keep"));
}

TEST(CapturesOfTwoUsers, DoNotSeeEachOthersNotes) {
  Service service(plainOptions({"--account", "ann:1", "--account", "bo:2"}));
  ASSERT_FALSE(service.start());
  SessionClient ann(service.port());
  SessionClient bo(service.port());
  ann.signIn("ann", "1");
  bo.signIn("bo", "2");
  const HttpHeaders key{{"Idempotency-Key", "same"}};
  const Json first = ann.sendJson("POST", "/api/captures", {{"raw", "mine"}}, key).json();
  const HttpReply second = bo.sendJson("POST", "/api/captures", {{"raw", "other"}}, key);
  EXPECT_EQ(second.status, 202);
  EXPECT_EQ(bo.get("/api/captures").json()["captures"].size(), 1U);
  EXPECT_EQ(bo.get(first["statusUrl"].get<std::string>()).status, 404);
  const std::string id = first["captureId"];
  EXPECT_EQ(bo.request("DELETE", "/api/captures/" + id).status, 404);
  EXPECT_EQ(ann.get("/api/captures").json()["captures"].size(), 1U);
}

}  // namespace
}  // namespace navora::service::tests
