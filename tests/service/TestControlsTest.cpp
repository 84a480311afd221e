#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

class TestControls : public ServiceTest {};

TEST_F(TestControls, AreAbsentWithoutTheOption) {
  start();
  client->signIn();
  const std::vector<std::pair<std::string, std::string>> requests{
      {"GET", "/__test/requests"},        {"DELETE", "/__test/requests"},
      {"POST", "/__test/faults"},         {"DELETE", "/__test/faults"},
      {"GET", "/__test/driver.js"},       {"POST", "/__test/driver/main/evaluate"},
      {"POST", "/__test/sessions/clear"}, {"POST", "/__test/settings"},
      {"GET", "/__test/captures"},        {"GET", "/__test/telemetry/events"},
      {"POST", "/__test/cookies"},        {"POST", "/__test/sessions/account"},
      {"POST", "/__test/notifications"},  {"GET", "/__test/pages/a.html"}};
  for (const auto& [method, path] : requests) {
    EXPECT_EQ(client->request(method, path, "{}").status, 404) << method << " " << path;
  }
}

TEST_F(TestControls, RequestsAreRecordedAsTheyCame) {
  start({"--test"});
  client->request("PUT", "/api/settings?a=b%20c", "{\"x\": \"\xC3\xBC\"}",
                  {{"x-lower", "1"}, {"X-Upper", " padded "}, {"x-lower", "2"}});
  client->get("/login");
  const Json log = client->get("/__test/requests").json();
  ASSERT_EQ(log.size(), 2U);
  EXPECT_EQ(log[0]["method"], "PUT");
  EXPECT_EQ(log[0]["target"], "/api/settings?a=b%20c");
  EXPECT_EQ(log[0]["body"], "{\"x\": \"\xC3\xBC\"}");
  EXPECT_EQ(log[0]["bodyEncoding"], "utf-8");
  const Json headers = log[0]["headers"];
  ASSERT_EQ(headers.size(), 6U);
  EXPECT_EQ(headers[0][0], "Host");
  EXPECT_EQ(headers[2], Json::array({"x-lower", "1"}));
  EXPECT_EQ(headers[3], Json::array({"X-Upper", "padded"}));
  EXPECT_EQ(headers[4], Json::array({"x-lower", "2"}));
  EXPECT_LT(log[0]["sequence"], log[1]["sequence"]);
}

TEST_F(TestControls, BytesThatAreNotUtf8AreRecordedAsBase64) {
  start({"--test"});
  client->request("POST", "/api/telemetry", "\xFF\xFE");
  const Json entry = client->get("/__test/requests").json()[0];
  EXPECT_EQ(entry["body"], "//4=");
  EXPECT_EQ(entry["bodyEncoding"], "base64");
}

TEST_F(TestControls, ChunkedBodyIsReadAndPassedOn) {
  start({"--test"});
  client->signIn();
  const TcpConnection connection = TcpConnection::connect(client->port());
  connection.send("POST /api/captures HTTP/1.1\r\nHost: x\r\nCookie: " + client->cookie +
                  "\r\nContent-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n"
                  "8\r\n{\"raw\":\"\r\n3;a=b\r\nab\"\r\n1\r\n}\r\n0\r\n\r\n");
  EXPECT_EQ(HttpReply::parse(connection.receiveAll()).status, 202);
  const Json log = client->get("/__test/requests?path=/api/captures").json();
  EXPECT_EQ(log[0]["body"], "{\"raw\":\"ab\"}");
}

TEST_F(TestControls, RecordCanBeFilteredAwaitedAndCleared) {
  start({"--test"});
  client->get("/login");
  client->request("POST", "/login", "a=b");
  client->get("/assets/base.css");
  EXPECT_EQ(client->get("/__test/requests?path=/login").json().size(), 2U);
  EXPECT_EQ(client->get("/__test/requests?path=/login&method=POST").json().size(), 1U);
  EXPECT_EQ(client->get("/__test/requests?count=3&timeout=5000").json().size(), 3U);
  EXPECT_EQ(client->get("/__test/requests?count=4&timeout=10").json().size(), 3U);
  EXPECT_EQ(client->request("DELETE", "/__test/requests").status, 204);
  EXPECT_EQ(client->get("/__test/requests").json(), Json::array());
}

TEST_F(TestControls, AllSessionsCanBeEnded) {
  start({"--test"});
  client->signIn();
  EXPECT_EQ(client->request("POST", "/__test/sessions/clear").status, 204);
  EXPECT_EQ(client->get("/api/auth/me").status, 401);
}

TEST_F(TestControls, NotesAreListedWithTheirKeys) {
  start({"--test", "--account", "ann:1", "--account", "bo:2"});
  client->signIn("bo", "2");
  client->sendJson("POST", "/api/captures", {{"raw", "one"}}, {{"Idempotency-Key", "mac-1"}});
  client->sendJson("POST", "/api/captures", {{"raw", "two"}});
  const Json notes = client->get("/__test/captures?account=bo").json();
  ASSERT_EQ(notes.size(), 2U);
  EXPECT_EQ(notes[0]["raw"], "two");
  EXPECT_TRUE(notes[0]["idempotencyKey"].is_null());
  EXPECT_EQ(notes[1]["raw"], "one");
  EXPECT_EQ(notes[1]["idempotencyKey"], "mac-1");
  EXPECT_EQ(client->get("/__test/captures").json(), Json::array());
}

TEST_F(TestControls, SessionsCanBecomeAnotherAccounts) {
  start({"--test"});
  client->signIn();
  const Json before = client->get("/api/auth/me").json()["user"];
  const Json other = client->request("POST", "/__test/sessions/account?account=other").json();
  const Json after = client->get("/api/auth/me").json()["user"];
  EXPECT_EQ(after, other);
  EXPECT_EQ(after["name"], "other");
  EXPECT_NE(after["id"], before["id"]);
  client->request("POST", "/__test/sessions/account?account=demo");
  EXPECT_EQ(client->get("/api/auth/me").json()["user"], before);
}

TEST_F(TestControls, CookiesAreSetAsTheyAreWritten) {
  start({"--test"});
  const Json cookies = Json::array({"tolvin_session=a; Path=/api", "b=c; Secure; Max-Age=0"});
  const HttpReply reply = client->sendJson("POST", "/__test/cookies", cookies);
  EXPECT_EQ(reply.status, 204);
  std::vector<std::string> set;
  for (const auto& [name, value] : reply.headers) {
    if (name == "Set-Cookie") set.push_back(value);
  }
  EXPECT_EQ(Json(set), cookies);
  const Json wrong = Json::array({"a=b\r\nX-More: c"});
  EXPECT_EQ(client->sendJson("POST", "/__test/cookies", wrong).status, 422);
  EXPECT_EQ(client->sendJson("POST", "/__test/cookies", {{"a", "b"}}).status, 422);
}

TEST_F(TestControls, TelemetryEventsAreKeptAsTheyCame) {
  start({"--test"});
  client->signIn();
  const Json events = Json::array({{{"event", "native_opened"}, {"seq", 1}},
                                   {{"event", "native_input"}, {"inputChars", 4}, {"seq", 2}}});
  EXPECT_EQ(client->sendJson("POST", "/api/telemetry", {{"events", events}}).status, 202);
  Json kept = client->get("/__test/telemetry/events").json();
  ASSERT_EQ(kept.size(), 2U);
  for (Json& event : kept) {
    EXPECT_EQ(event["account"], "demo");
    event.erase("account");
  }
  EXPECT_EQ(kept, events);
}

TEST_F(TestControls, SettingsCanBeChangedBeyondTheirRules) {
  start({"--test"});
  client->signIn();
  EXPECT_EQ(client->sendJson("POST", "/__test/settings", {{"quietHours", "sometimes"}}).status,
            200);
  EXPECT_EQ(client->get("/api/settings").json()["settings"]["quietHours"], "sometimes");
  EXPECT_EQ(client->sendJson("POST", "/__test/settings", {{"quietHours", 5}}).status, 422);
}

TEST_F(TestControls, NotificationsCanBeRaised) {
  start({"--test", "--account", "ann:1", "--account", "bo:2"});
  client->signIn("bo", "2");
  const Json item{{"id", 17}, {"kind", "invite"}, {"data", {{"date", "2026-03-09"}}}};
  EXPECT_EQ(client->sendJson("POST", "/__test/notifications?account=bo", item).status, 201);
  const Json items = client->get("/api/notifications").json()["notifications"];
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0]["id"], 17);
  EXPECT_EQ(items[0]["read"], false);
}

TEST_F(TestControls, PagesOfTheTestAreServedWithTheirPlaceholdersFilled) {
  const TemporaryDirectory pages;
  writeFile(pages.path() / "a.html", "<p>{{word}} {{other}} {{ word }}</p>");
  writeFile(pages.path() / "a.txt", "{{word}}");
  start({"--test", "--test-pages", pages.path().string()});
  const HttpReply html = client->get("/__test/pages/a.html?word=%3Cb%3E&unused=1");
  EXPECT_EQ(html.body, "<p><b> {{other}} {{ word }}</p>");
  EXPECT_EQ(html.header("Content-Type"), "text/html; charset=utf-8");
  EXPECT_EQ(client->get("/__test/pages/a.txt?word=x").body, "{{word}}");
  EXPECT_EQ(client->get("/__test/pages/none.html").status, 404);
  EXPECT_EQ(client->get("/__test/pages/..%2Fa.html").status, 404);
  EXPECT_EQ(client->get("/__test/requests?path=/__test/pages/a.html").json().size(), 1U);
}

TEST_F(TestControls, MalformedRequestIsAnswered400AndALargeHead413) {
  start({"--test"});
  const TcpConnection malformed = TcpConnection::connect(client->port());
  malformed.send("nonsense\r\n\r\n");
  EXPECT_EQ(HttpReply::parse(malformed.receiveAll()).status, 400);
  const TcpConnection large = TcpConnection::connect(client->port());
  large.send("GET / HTTP/1.1\r\nX: " + std::string(70000, 'x'));
  EXPECT_EQ(HttpReply::parse(large.receiveAll()).status, 413);
}

}  // namespace
}  // namespace navora::service::tests
