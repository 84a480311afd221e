#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

class Api : public ServiceTest {
 protected:
  // Starts the service with sample circles and signs in.
  void startWithSamples() {
    auto options = plainOptions();
    options.samples = true;
    service = std::make_unique<Service>(options);
    ASSERT_FALSE(service->start());
    client = std::make_unique<SessionClient>(service->port());
    client->signIn();
  }
};

TEST_F(Api, EveryPathNeedsASession) {
  start();
  const std::vector<std::pair<std::string, std::string>> requests{
      {"GET", "/api/auth/me"},      {"GET", "/api/settings"},
      {"PUT", "/api/settings"},     {"GET", "/api/notifications"},
      {"GET", "/api/captures"},     {"POST", "/api/captures"},
      {"GET", "/api/jobs/x"},       {"POST", "/api/telemetry"},
      {"GET", "/api/circles"},      {"GET", "/api/events"},
      {"GET", "/api/export"},       {"GET", "/api/export/navora-notes.zip"},
      {"GET", "/api/nowhere"},      {"GET", "/api/attachments/x"},
      {"DELETE", "/api/captures/x"}};
  for (const auto& [method, path] : requests) {
    const HttpReply reply = client->request(method, path);
    EXPECT_EQ(reply.status, 401) << method << " " << path;
    EXPECT_EQ(reply.header("Content-Type"), "application/json") << path;
    EXPECT_EQ(reply.json()["error"]["code"], "signed_out") << path;
  }
}

TEST_F(Api, UnknownPathIsNotFoundForASignedInUser) {
  start();
  client->signIn();
  EXPECT_EQ(client->get("/api/nowhere").status, 404);
  EXPECT_TRUE(client->get("/api/nowhere").json()["error"]["message"].is_string());
}

TEST_F(Api, MalformedJsonIsRefused) {
  start();
  client->signIn();
  const HttpHeaders json{{"Content-Type", "application/json"}};
  for (const char* body : {"{", "[]", "\"text\"", "{\"raw\": \"\xFF\"}", "{} trailing"}) {
    EXPECT_EQ(client->request("POST", "/api/captures", body, json).status, 400) << body;
  }
}

TEST_F(Api, BodyOfAnotherTypeIsRefused) {
  start();
  client->signIn();
  const HttpReply reply =
      client->request("POST", "/api/captures", R"({"raw":"x"})", {{"Content-Type", "text/plain"}});
  EXPECT_EQ(reply.status, 415);
}

TEST_F(Api, BodyOfOneMebibyteIsReadAndOneByteMoreIsNot) {
  start();
  client->signIn();
  const HttpHeaders json{{"Content-Type", "application/json"}};
  const std::string largest = R"({"raw":"x"})" + std::string(1024 * 1024 - 11, ' ');
  EXPECT_EQ(client->request("POST", "/api/captures", largest, json).status, 202);
  const HttpReply refused = client->request("POST", "/api/captures", largest + " ", json);
  EXPECT_EQ(refused.status, 413);
  EXPECT_EQ(refused.json()["error"]["code"], "too_large");
}

TEST_F(Api, AnotherSiteCannotChangeAnything) {
  start();
  client->signIn();
  const HttpReply reply = client->sendJson("POST", "/api/captures", {{"raw", "x"}},
                                           {{"Origin", "http://evil.example"}});
  EXPECT_EQ(reply.status, 403);
  EXPECT_EQ(client->get("/api/captures").json()["captures"].size(), 0U);
  const std::string own = "http://127.0.0.1:" + std::to_string(client->port());
  EXPECT_EQ(client->sendJson("POST", "/api/captures", {{"raw", "x"}}, {{"Origin", own}}).status,
            202);
}

TEST_F(Api, AnswersAreNeitherCachedNorSniffed) {
  start();
  client->signIn();
  const HttpReply reply = client->get("/api/settings");
  EXPECT_EQ(reply.header("Cache-Control"), "no-store");
  EXPECT_EQ(reply.header("X-Content-Type-Options"), "nosniff");
}

TEST_F(Api, TelemetryIsAcceptedAndCounted) {
  start({"--test"});
  client->signIn();
  const Json events = Json::array({{{"event", "native_opened"}, {"seq", 1}},
                                   {{"event", "native_input"}, {"seq", 2}},
                                   {{"event", "native_input"}, {"seq", 3}}});
  const HttpReply reply = client->sendJson("POST", "/api/telemetry", {{"events", events}});
  EXPECT_EQ(reply.status, 202);
  EXPECT_EQ(reply.json()["accepted"], 3);
  EXPECT_EQ(client->get("/__test/telemetry").json(),
            Json({{"native_opened", 1}, {"native_input", 2}}));
}

TEST_F(Api, TelemetryBatchWithAWrongEventIsRefusedAsAWhole) {
  start({"--test"});
  client->signIn();
  const Json events = Json::array({{{"event", "native_opened"}}, {{"event", 7}}});
  EXPECT_EQ(client->sendJson("POST", "/api/telemetry", {{"events", events}}).status, 422);
  EXPECT_EQ(client->sendJson("POST", "/api/telemetry", {{"events", 1}}).status, 422);
  EXPECT_EQ(client->get("/__test/telemetry").json(), Json::object());
}

TEST_F(Api, CirclesHoldRoomsWithMessages) {
  startWithSamples();
  const Json circles = client->get("/api/circles").json()["circles"];
  ASSERT_FALSE(circles.empty());
  const std::string id = circles[0]["id"];
  const std::string room = circles[0]["rooms"][0]["id"];
  EXPECT_EQ(client->sendJson("PATCH", "/api/circles/" + id, {{"name", " Home "}}).status, 200);
  EXPECT_EQ(client->sendJson("PATCH", "/api/circles/" + id, {{"name", "  "}}).status, 422);
  EXPECT_EQ(client->sendJson("PATCH", "/api/circles/none", {{"name", "x"}}).status, 404);
  EXPECT_EQ(client->sendJson("POST", "/api/rooms/" + room + "/messages", {{"text", "Hi"}}).status,
            201);
  const Json after = client->get("/api/circles").json()["circles"][0];
  EXPECT_EQ(after["name"], "Home");
  const Json messages = after["rooms"][0]["messages"];
  ASSERT_GE(messages.size(), 2U);
  EXPECT_EQ(messages[messages.size() - 2]["text"], "Hi");
  EXPECT_EQ(messages[messages.size() - 2]["author"], "demo");
}

TEST_F(Api, SamplePeopleAnswerMessagesAndJoinEvents) {
  startWithSamples();
  const Json room = client->get("/api/circles").json()["circles"][0]["rooms"][0];
  const std::string id = room["id"];
  client->sendJson("POST", "/api/rooms/" + id + "/messages", {{"text", "Hi"}});
  const Json answered = client->get("/api/notifications").json()["notifications"][0];
  EXPECT_EQ(answered["kind"], "message");
  EXPECT_EQ(answered["roomId"], id);
  EXPECT_EQ(answered["lead"], "Ines in Weekend:");
  const Json answer =
      client->get("/api/circles").json()["circles"][0]["rooms"][0]["messages"].back();
  EXPECT_EQ(answer["author"], "Ines");
  EXPECT_EQ(answer["text"], answered["text"]);

  const Json event =
      client->sendJson("POST", "/api/events", {{"date", "2026-03-09"}, {"title", "Tea"}})
          .json()["event"];
  const Json joined = client->get("/api/notifications").json()["notifications"][0];
  EXPECT_EQ(joined["kind"], "event_changed");
  EXPECT_EQ(joined["eventUid"], event["uid"]);
  EXPECT_EQ(joined["data"]["date"], "2026-03-09");
}

TEST_F(Api, NoMessageIsAnsweredWithoutSamplePeople) {
  start();
  client->signIn();
  client->sendJson("POST", "/api/events", {{"date", "2026-03-09"}, {"title", "Tea"}});
  EXPECT_EQ(client->get("/api/notifications").json()["notifications"], Json::array());
}

TEST_F(Api, EventsBelongToTheirMonth) {
  start();
  client->signIn();
  const HttpReply added = client->sendJson(
      "POST", "/api/events", {{"date", "2026-03-09"}, {"time", "08:30"}, {"title", "Tea"}});
  EXPECT_EQ(added.status, 201);
  EXPECT_EQ(client->get("/api/events?month=2026-03").json()["events"][0]["title"], "Tea");
  EXPECT_EQ(client->get("/api/events?month=2026-04").json()["events"].size(), 0U);
  EXPECT_EQ(client->get("/api/events?month=2026-13").status, 400);
  const std::string uid = added.json()["event"]["uid"];
  EXPECT_EQ(client->request("DELETE", "/api/events/" + uid).status, 204);
  EXPECT_EQ(client->request("DELETE", "/api/events/" + uid).status, 404);
}

TEST_F(Api, EventsWithoutARealDateAreRefused) {
  start();
  client->signIn();
  for (const char* date : {"2026-02-30", "2026-3-9", "", "tomorrow"}) {
    const HttpReply reply =
        client->sendJson("POST", "/api/events", {{"date", date}, {"title", "Tea"}});
    EXPECT_EQ(reply.status, 422) << date;
  }
}

}  // namespace
}  // namespace navora::service::tests
