#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

using testing::HasSubstr;
using testing::Not;

class Pages : public ServiceTest {};

TEST_F(Pages, RootContainsTheElementsThatTheApplicationUses) {
  start();
  client->signIn();
  const HttpReply reply = client->get("/");
  EXPECT_EQ(reply.status, 200);
  for (const char* part : {"id=\"capture-input\"", "id=\"ai-provider\"", "id=\"ai-model\"",
                           "id=\"capture-submit\"", "data-theme=\"system\""}) {
    EXPECT_THAT(reply.body, HasSubstr(part));
  }
  EXPECT_THAT(reply.body, Not(HasSubstr("{{")));
}

TEST_F(Pages, PolicyAllowsOwnFilesOnly) {
  start();
  const std::string policy = client->get("/login").header("Content-Security-Policy");
  EXPECT_THAT(policy, HasSubstr("default-src 'none'; script-src 'self';"));
  EXPECT_THAT(policy, Not(HasSubstr("unsafe")));
}

TEST_F(Pages, HaveNoInlineScriptsOrStyles) {
  start();
  client->signIn();
  for (const char* path : {"/", "/login"}) {
    if (std::string_view(path) == "/login") client->cookie.clear();
    const std::string page = client->get(path).body;
    EXPECT_THAT(page, Not(HasSubstr("<script>"))) << path;
    EXPECT_THAT(page, Not(HasSubstr("<style"))) << path;
    EXPECT_THAT(page, Not(HasSubstr(" style="))) << path;
    EXPECT_THAT(page, Not(HasSubstr(" onclick="))) << path;
  }
}

TEST_F(Pages, LanguageFollowsTheSettingAndThenTheRequest) {
  start();
  client->signIn();
  EXPECT_THAT(client->get("/").body, HasSubstr("<html lang=\"en\""));
  EXPECT_THAT(client->get("/", {{"Accept-Language", "de"}}).body, HasSubstr("<html lang=\"de\""));
  client->sendJson("PUT", "/api/settings", {{"locale", "ja"}, {"theme", "dark"}});
  const std::string page = client->get("/", {{"Accept-Language", "de"}}).body;
  EXPECT_THAT(page, HasSubstr("<html lang=\"ja\" data-theme=\"dark\">"));
}

TEST_F(Pages, HostileNameOfAUserIsEscaped) {
  start({"--account", "<b>\"x:p"});
  client->signIn("%3Cb%3E%22x", "p");
  const std::string page = client->get("/").body;
  EXPECT_THAT(page, HasSubstr("data-user=\"&lt;b&gt;&quot;x\""));
  EXPECT_THAT(page, Not(HasSubstr("<b>")));
}

TEST_F(Pages, NoScriptParsesTextAsMarkup) {
  const std::filesystem::path assets = plainOptions().pages / "assets";
  std::size_t scripts = 0;
  start();
  for (const auto& entry : std::filesystem::directory_iterator(assets)) {
    if (entry.path().extension() != ".js") continue;
    ++scripts;
    const std::string script = client->get("/assets/" + entry.path().filename().string()).body;
    ASSERT_FALSE(script.empty()) << entry.path();
    for (const char* function :
         {"innerHTML", "outerHTML", "insertAdjacentHTML", "document.write"}) {
      EXPECT_THAT(script, Not(HasSubstr(function))) << entry.path();
    }
  }
  EXPECT_GT(scripts, 5U);
}

TEST_F(Pages, EveryFileThatAPageNamesIsThere) {
  start();
  client->signIn();
  std::string pages = client->get("/").body;
  client->cookie.clear();
  pages += client->get("/login").body;
  std::size_t found = 0;
  for (std::size_t position = 0;
       (position = pages.find("\"/assets/", position)) != std::string::npos; ++position) {
    const std::size_t end = pages.find('"', position + 1);
    const std::string path = pages.substr(position + 1, end - position - 1);
    EXPECT_EQ(client->get(path).status, 200) << path;
    ++found;
  }
  EXPECT_GT(found, 5U);
}

TEST_F(Pages, NothingOutsideTheDirectoryIsServed) {
  start();
  for (const char* path : {"/assets/../login.html", "/assets/%2e%2e/login.html", "/assets/.hidden",
                           "/assets//base.css", "/assets/", "/login.html"}) {
    EXPECT_EQ(client->get(path).status, 404) << path;
  }
}

TEST_F(Pages, DriverIsPutIntoPagesOnlyWhenAskedFor) {
  start({"--test"});
  EXPECT_THAT(client->get("/login").body, Not(HasSubstr("/__test/")));
  start({"--test", "--test-driver"});
  const HttpReply page = client->get("/login");
  EXPECT_THAT(page.body, HasSubstr("<script src=\"/__test/driver.js?name=main\"></script>"));
  EXPECT_THAT(page.header("Content-Security-Policy"), HasSubstr("'unsafe-eval'"));
}

}  // namespace
}  // namespace navora::service::tests
