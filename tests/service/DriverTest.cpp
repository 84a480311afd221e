#include <future>

#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

using testing::HasSubstr;

// Acts as a page that includes the driver script.
class Page {
 public:
  Page(int port, const std::string& name) : client_(port), base_("/__test/driver/" + name) {
    generation_ =
        client_.sendJson("POST", base_ + "/register", Json::object()).json()["generation"];
  }

  std::string nextTarget() const {
    return base_ + "/next?generation=" + std::to_string(generation_);
  }
  HttpReply next() { return client_.get(nextTarget()); }
  void answer(Json result) { client_.sendJson("POST", base_ + "/result", result); }
  void leave() { client_.sendJson("POST", base_ + "/leave", {{"generation", generation_}}); }

 private:
  HttpClient client_;
  std::string base_;
  std::uint64_t generation_ = 0;
};

class Driver : public ServiceTest {
 protected:
  void SetUp() override { start({"--test"}); }

  std::future<HttpReply> evaluate(const std::string& script, int timeout = 10000) {
    return std::async(std::launch::async, [this, script, timeout] {
      return HttpClient(client->port())
          .sendJson("POST", "/__test/driver/main/evaluate",
                    {{"script", script}, {"timeout", timeout}});
    });
  }
};

TEST_F(Driver, ScriptRunsInThePageAndItsValueIsReturned) {
  Page page(client->port(), "main");
  auto result = evaluate("return 6 * 7");
  const Json script = page.next().json();
  EXPECT_EQ(script["script"], "return 6 * 7");
  page.answer({{"id", script["id"]}, {"ok", true}, {"value", 42}});
  const HttpReply reply = result.get();
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.json(), Json({{"ok", true}, {"value", 42}}));
}

TEST_F(Driver, ErrorOfThePageIsReturned) {
  Page page(client->port(), "main");
  auto result = evaluate("throw new Error('no')");
  page.answer({{"id", page.next().json()["id"]}, {"ok", false}, {"error", "Error: no"}});
  EXPECT_EQ(result.get().json()["error"], "Error: no");
}

TEST_F(Driver, ScriptWaitsForAPage) {
  auto result = evaluate("return 1");
  Page page(client->port(), "main");
  page.answer({{"id", page.next().json()["id"]}, {"ok", true}, {"value", 1}});
  EXPECT_EQ(result.get().json()["value"], 1);
}

TEST_F(Driver, ScriptWithoutAPageTimesOut) {
  EXPECT_EQ(evaluate("return 1", 50).get().status, 504);
}

TEST_F(Driver, ScriptThatTimedOutIsNotRunLater) {
  EXPECT_EQ(evaluate("return 1", 50).get().status, 504);
  Page page(client->port(), "main");
  auto second = evaluate("return 2");
  const Json script = page.next().json();
  EXPECT_EQ(script["script"], "return 2");
  page.answer({{"id", script["id"]}, {"ok", true}, {"value", 2}});
  EXPECT_EQ(second.get().json()["value"], 2);
}

TEST_F(Driver, NewestPageTakesOverAndTheOlderOneIsReleased) {
  Page old(client->port(), "main");
  auto waiting = std::async(std::launch::async, [&] { return old.next(); });
  Page fresh(client->port(), "main");
  EXPECT_EQ(waiting.get().status, 410);
  auto result = evaluate("return 3");
  const Json script = fresh.next().json();
  fresh.answer({{"id", script["id"]}, {"ok", true}, {"value", 3}});
  EXPECT_EQ(result.get().json()["value"], 3);
}

TEST_F(Driver, ScriptIsKeptForTheNextPageWhenTheListeningOneIsCut) {
  Page old(client->port(), "main");
  {
    const TcpConnection connection = TcpConnection::connect(client->port());
    connection.send(client->requestBytes("GET", old.nextTarget()));
    EXPECT_FALSE(connection.readable(100));
  }
  auto result = evaluate("return 4");
  Page fresh(client->port(), "main");
  const Json script = fresh.next().json();
  EXPECT_EQ(script["script"], "return 4");
  fresh.answer({{"id", script["id"]}, {"ok", true}, {"value", 4}});
  EXPECT_EQ(result.get().json()["value"], 4);
}

TEST_F(Driver, PageThatIsUnloadedDuringAScriptIsReported) {
  Page page(client->port(), "main");
  auto result = evaluate("location.reload()");
  EXPECT_EQ(page.next().status, 200);
  page.leave();
  const HttpReply reply = result.get();
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.json(), Json({{"ok", false}, {"error", "the page went away"}}));
}

TEST_F(Driver, NamesAreChannelsOfTheirOwn) {
  Page frame(client->port(), "frame");
  auto waiting = std::async(std::launch::async, [&] { return frame.next(); });
  Page page(client->port(), "main");
  auto result = evaluate("return 5");
  const Json script = page.next().json();
  page.answer({{"id", script["id"]}, {"ok", true}, {"value", 5}});
  EXPECT_EQ(result.get().json()["value"], 5);
  frame.leave();
  EXPECT_EQ(waiting.get().status, 410);
}

TEST_F(Driver, PagesOfOtherOriginsMayUseIt) {
  const HttpReply script = client->get("/__test/driver.js?name=main");
  EXPECT_EQ(script.status, 200);
  EXPECT_EQ(script.header("Access-Control-Allow-Origin"), "*");
  EXPECT_THAT(script.header("Content-Type"), HasSubstr("text/javascript"));
  const HttpReply preflight = client->request(
      "OPTIONS", "/__test/driver/main/result", "",
      {{"Origin", "http://localhost:1"}, {"Access-Control-Request-Headers", "content-type"}});
  EXPECT_EQ(preflight.status, 204);
  EXPECT_EQ(preflight.header("Access-Control-Allow-Headers"), "content-type");
}

TEST_F(Driver, EvaluationWithoutAScriptIsRefused) {
  EXPECT_EQ(client->sendJson("POST", "/__test/driver/main/evaluate", Json::object()).status, 422);
  EXPECT_EQ(client->request("POST", "/__test/driver/main/evaluate", "x").status, 422);
}

}  // namespace
}  // namespace navora::service::tests
