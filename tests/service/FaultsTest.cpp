#include <chrono>

#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class Faults : public ServiceTest {
 protected:
  void SetUp() override {
    start({"--test"});
    client->signIn();
  }

  void add(const Json& action, const std::string& path = "/api/auth/me", const Json& more = {}) {
    Json rule{{"path", path}, {"action", action}};
    if (more.is_object()) rule.update(more);
    EXPECT_EQ(client->sendJson("POST", "/__test/faults", rule).status, 204) << rule;
  }

  HttpReply me() { return client->get("/api/auth/me"); }
};

TEST_F(Faults, AnswerReplacesTheProperOne) {
  add({{"status", 503},
       {"headers", Json::array({{"Retry-After", "7"}, {"X-More", "a"}})},
       {"body", "later"},
       {"contentType", "text/plain"}});
  const HttpReply reply = me();
  EXPECT_EQ(reply.status, 503);
  EXPECT_EQ(reply.header("Retry-After"), "7");
  EXPECT_EQ(reply.header("Content-Type"), "text/plain");
  EXPECT_EQ(reply.body, "later");
}

TEST_F(Faults, RuleAppliesALimitedNumberOfTimes) {
  add({{"status", 500}}, "/api/auth/me", {{"times", 2}});
  EXPECT_EQ(me().status, 500);
  EXPECT_EQ(me().status, 500);
  EXPECT_EQ(me().status, 200);
}

TEST_F(Faults, UnlimitedRuleEndsWithTheClearing) {
  add({{"status", 500}}, "/api/auth/me", {{"times", -1}});
  for (int count = 0; count < 5; ++count)
    EXPECT_EQ(me().status, 500);
  EXPECT_EQ(client->request("DELETE", "/__test/faults").status, 204);
  EXPECT_EQ(me().status, 200);
}

TEST_F(Faults, RuleMatchesMethodAndExactPathOnly) {
  add({{"status", 500}}, "/api/settings", {{"method", "PUT"}, {"times", -1}});
  EXPECT_EQ(client->get("/api/settings").status, 200);
  EXPECT_EQ(client->sendJson("PUT", "/api/settings", Json::object()).status, 500);
  EXPECT_EQ(client->sendJson("PUT", "/api/settings?x=1", Json::object()).status, 500);
  EXPECT_EQ(client->sendJson("PUT", "/api/settings/more", Json::object()).status, 404);
}

TEST_F(Faults, OlderRuleApplies) {
  add({{"status", 501}});
  add({{"status", 502}});
  EXPECT_EQ(me().status, 501);
  EXPECT_EQ(me().status, 502);
}

TEST_F(Faults, DelayComesBeforeTheProperAnswer) {
  add({{"delay", 300}});
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(me().status, 200);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(300));
}

TEST_F(Faults, HangingRequestIsAcceptedAndNeverAnsweredUntilTheClearing) {
  add({{"hang", true}});
  const TcpConnection connection = TcpConnection::connect(client->port());
  connection.send(client->requestBytes("GET", "/api/auth/me"));
  client->get("/__test/requests?path=/api/auth/me&count=1&timeout=5000");
  EXPECT_FALSE(connection.readable(200));
  client->request("DELETE", "/__test/faults");
  EXPECT_EQ(connection.receiveAll(), "");
}

TEST_F(Faults, HangingRequestDoesNotKeepTheServiceFromStopping) {
  add({{"hang", true}});
  const TcpConnection connection = TcpConnection::connect(client->port());
  connection.send(client->requestBytes("GET", "/api/auth/me"));
  client->get("/__test/requests?path=/api/auth/me&count=1&timeout=5000");
  service->stop();
  EXPECT_EQ(connection.receiveAll(), "");
}

TEST_F(Faults, DropBeforeSendsNotOneByteAndProcessesNothing) {
  add({{"drop", "before"}}, "/api/captures", {{"method", "POST"}});
  EXPECT_EQ(client->sendJson("POST", "/api/captures", {{"raw", "x"}}).bytes, "");
  EXPECT_EQ(client->get("/api/captures").json()["captures"].size(), 0U);
}

TEST_F(Faults, DropDuringPromisesTheWholeLengthAndSendsLess) {
  const std::string whole = me().body;
  add({{"drop", "during"}, {"bytes", 5}});
  const HttpReply reply = me();
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.header("Content-Length"), std::to_string(whole.size()));
  EXPECT_EQ(reply.body, whole.substr(0, 5));
}

TEST_F(Faults, DropAfterStoresTheNoteAndSendsNothing) {
  add({{"drop", "after"}}, "/api/captures", {{"method", "POST"}});
  EXPECT_EQ(client->sendJson("POST", "/api/captures", {{"raw", "x"}}).bytes, "");
  EXPECT_EQ(client->get("/api/captures").json()["captures"].size(), 1U);
}

TEST_F(Faults, OversizeHasExactlyTheSizeAndIsJson) {
  for (const std::size_t size : {14U, 15U, 1048577U}) {
    add({{"oversize", size}});
    const HttpReply reply = me();
    EXPECT_EQ(reply.header("Content-Length"), std::to_string(size));
    EXPECT_EQ(reply.body.size(), size);
    EXPECT_TRUE(reply.json().is_object());
  }
}

TEST_F(Faults, AnswerCanComeAfterTheRequestWasProcessed) {
  const Json actions = Json::array({{{"status", 500}, {"process", true}},
                                    {{"redirect", "/login"}, {"process", true}},
                                    {{"oversize", 100}, {"process", true}}});
  for (std::size_t index = 0; index < actions.size(); ++index) {
    add(actions[index], "/api/captures", {{"method", "POST"}});
    const HttpReply reply = client->sendJson("POST", "/api/captures", {{"raw", "x"}});
    EXPECT_NE(reply.status, 202);
    EXPECT_NE(reply.status, 0);
    EXPECT_EQ(client->get("/api/captures").json()["captures"].size(), index + 1);
  }
}

TEST_F(Faults, RedirectPointsAnywhere) {
  add({{"redirect", "http://127.0.0.1:9/x"}});
  EXPECT_EQ(me().status, 302);
  add({{"redirect", "/login"}, {"status", 307}});
  const HttpReply reply = me();
  EXPECT_EQ(reply.status, 307);
  EXPECT_EQ(reply.header("Location"), "/login");
}

TEST_F(Faults, GarbageIsNoHttp) {
  add({{"garbage", true}});
  const HttpReply reply = me();
  EXPECT_EQ(reply.status, 0);
  EXPECT_FALSE(reply.bytes.empty());
  EXPECT_THAT(reply.bytes, testing::Not(HasSubstr("HTTP/")));
}

TEST_F(Faults, SlowAnswerComesInPieces) {
  add({{"slow", {{"bytes", 100}, {"interval", 40}}}});
  const TcpConnection connection = TcpConnection::connect(client->port());
  const auto begin = std::chrono::steady_clock::now();
  connection.send(client->requestBytes("GET", "/api/auth/me"));
  EXPECT_EQ(connection.receiveSome().size(), 100U);
  const std::string rest = connection.receiveAll();
  EXPECT_THAT(rest, EndsWith("}}"));
  const auto pauses = static_cast<int>((rest.size() + 99) / 100);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(40 * pauses));
}

TEST_F(Faults, FaultyRequestsAreRecordedToo) {
  client->request("DELETE", "/__test/requests");
  add({{"drop", "before"}});
  me();
  EXPECT_EQ(client->get("/__test/requests").json().size(), 1U);
}

TEST_F(Faults, RulesThatDescribeNoSingleFaultAreRefused) {
  const std::vector<Json> wrong{
      Json::array(),
      {{"path", "/x"}},
      {{"action", {{"hang", true}}}},
      {{"path", "x"}, {"action", {{"hang", true}}}},
      {{"path", "/x"}, {"action", {{"hang", false}}}},
      {{"path", "/x"}, {"action", {{"hang", true}, {"status", 500}}}},
      {{"path", "/x"}, {"action", {{"status", "500"}}}},
      {{"path", "/x"}, {"action", {{"drop", "sometimes"}}}},
      {{"path", "/x"}, {"action", {{"drop", "during"}}}},
      {{"path", "/x"}, {"action", {{"slow", {{"bytes", 0}, {"interval", 1}}}}}},
      {{"path", "/x"}, {"action", {{"slow", 3}}}},
      {{"path", "/x"}, {"action", {{"delay", -1}}}},
      {{"path", "/x"}, {"action", {{"status", 500}, {"process", 1}}}},
      {{"path", "/x"}, {"action", {{"garbage", true}, {"process", true}}}},
      {{"path", "/x"}, {"action", {{"hang", true}, {"process", 1}}}},
      {{"path", "/x"}, {"action", {{"explode", true}}}},
      {{"path", "/x"}, {"times", 0}, {"action", {{"hang", true}}}},
      {{"path", "/x"}, {"action", {{"hang", true}}}, {"more", 1}},
  };
  for (const Json& rule : wrong) {
    EXPECT_EQ(client->sendJson("POST", "/__test/faults", rule).status, 422) << rule;
  }
}

}  // namespace
}  // namespace navora::service::tests
