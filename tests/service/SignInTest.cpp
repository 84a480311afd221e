#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

const HttpHeaders form{{"Content-Type", "application/x-www-form-urlencoded"}};

class SignIn : public ServiceTest {};

TEST_F(SignIn, RootSendsASignedOutVisitorToTheLoginPage) {
  start();
  const HttpReply reply = client->get("/");
  EXPECT_EQ(reply.status, 302);
  EXPECT_EQ(reply.header("Location"), "/login");
}

TEST_F(SignIn, RightPasswordOpensASessionWithAPersistentHttpOnlyCookie) {
  start();
  const HttpReply reply = client->request("POST", "/login", "name=demo&password=demo", form);
  EXPECT_EQ(reply.status, 303);
  EXPECT_EQ(reply.header("Location"), "/");
  EXPECT_THAT(reply.header("Set-Cookie"),
              MatchesRegex("tolvin_session=[0-9a-f]{64}; Path=/; HttpOnly; SameSite=Lax; "
                           "Max-Age=2592000"));
  EXPECT_EQ(client->get("/").status, 200);
}

TEST_F(SignIn, EverySignInGetsATokenOfItsOwn) {
  start();
  client->signIn();
  const std::string first = client->cookie;
  client->signIn();
  EXPECT_NE(client->cookie, first);
}

TEST_F(SignIn, WrongPasswordShowsTheLoginPageAgainWithoutACookie) {
  start();
  const HttpReply reply = client->request("POST", "/login", "name=demo&password=wrong", form);
  EXPECT_EQ(reply.status, 401);
  EXPECT_EQ(reply.header("Set-Cookie"), "");
  EXPECT_THAT(reply.body, HasSubstr("The name or the password is not right."));
  EXPECT_THAT(reply.body, HasSubstr("value=\"demo\""));
}

TEST_F(SignIn, NameIsShownEscapedAfterAFailure) {
  start();
  const HttpReply reply =
      client->request("POST", "/login", "name=%22%3E%3Cscript%3Ex&password=y", form);
  EXPECT_THAT(reply.body, HasSubstr("value=\"&quot;&gt;&lt;script&gt;x\""));
  EXPECT_THAT(reply.body, testing::Not(HasSubstr("<script>x")));
}

TEST_F(SignIn, LoginPageSendsASignedInVisitorToTheRoot) {
  start();
  client->signIn();
  EXPECT_EQ(client->get("/login").header("Location"), "/");
}

TEST_F(SignIn, SignOutEndsTheSessionOnTheServerToo) {
  start();
  client->signIn();
  const std::string cookie = client->cookie;
  const HttpReply reply = client->request("POST", "/logout");
  EXPECT_EQ(reply.status, 303);
  EXPECT_EQ(reply.header("Location"), "/login");
  EXPECT_EQ(reply.header("Set-Cookie"),
            "tolvin_session=; Path=/; HttpOnly; SameSite=Lax; Max-Age=0");
  client->cookie = cookie;
  EXPECT_EQ(client->get("/api/auth/me").status, 401);
}

TEST_F(SignIn, AnotherSiteCannotSignIn) {
  start();
  HttpHeaders headers = form;
  headers.emplace_back("Origin", "http://127.0.0.1:1");
  EXPECT_EQ(client->request("POST", "/login", "name=demo&password=demo", headers).status, 403);
}

TEST_F(SignIn, SessionIsFoundAmongOtherCookies) {
  start();
  client->signIn();
  client->cookie = "a=b; xtolvin_session=1; " + client->cookie + "; c=d";
  EXPECT_EQ(client->get("/api/auth/me").status, 200);
}

TEST_F(SignIn, AccountsAreDifferentUsers) {
  start({"--account", "ann:one", "--account", "bo:two"});
  client->signIn("ann", "one");
  const Json ann = client->get("/api/auth/me").json();
  client->signIn("bo", "two");
  const Json bo = client->get("/api/auth/me").json();
  EXPECT_EQ(ann["user"]["name"], "ann");
  EXPECT_TRUE(ann["user"]["id"].is_string());
  EXPECT_NE(ann["user"]["id"], bo["user"]["id"]);
  EXPECT_EQ(client->request("POST", "/login", "name=ann&password=two", form).status, 401);
}

}  // namespace
}  // namespace navora::service::tests
