#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"

namespace navora::driver {
namespace {

using Urls = std::vector<std::string>;

class NavigationTest : public TestPageTest {
 protected:
  void SetUp() override {
    TestPageTest::SetUp();
    if (HasFatalFailure()) return;
    desktop().openedUrls().clear();
    openTestPage("matrix.html");
  }

  void expectStillOnMatrix() {
    EXPECT_EQ(page().path(), "/__test/pages/matrix.html");
    EXPECT_TRUE(foreign().requests().empty());
    EXPECT_EQ(application().windows().size(), 1u);
  }

  void expectNothingHappened() {
    EXPECT_EQ(openedBeforeMarker(), Urls{});
    expectStillOnMatrix();
  }

  void expectOpenedInBrowser(const std::string& url) {
    EXPECT_EQ(openedBeforeMarker(), Urls{url});
    expectStillOnMatrix();
  }

  void expectLanded() {
    page().waitUntilTrue("document.querySelector('#landing') !== null", "the landing page");
    EXPECT_EQ(application().windows().size(), 1u);
    EXPECT_EQ(desktop().openedUrls().all(), Urls{});
  }
};

TEST_F(NavigationTest, FollowsASameOriginLinkInTheWindow) {
  page().click("#same");
  expectLanded();
}

TEST_F(NavigationTest, LoadsASameOriginLinkToANewWindowInTheSameWindow) {
  page().click("#same-blank");
  expectLanded();
}

TEST_F(NavigationTest, LoadsASameOriginWindowOpenInTheSameWindow) {
  page().click("#open-same");
  expectLanded();
}

TEST_F(NavigationTest, SubmitsASameOriginForm) {
  page().click("#form-same");
  expectLanded();
}

TEST_F(NavigationTest, OpensAForeignLinkInTheBrowserAndStays) {
  page().click("#foreign");
  expectOpenedInBrowser(foreign().url("/page"));
}

TEST_F(NavigationTest, OpensAForeignLinkWithNestedElementsInTheBrowser) {
  page().click("#foreign-nested-inner");
  expectOpenedInBrowser(foreign().url("/page"));
}

TEST_F(NavigationTest, OpensAForeignLinkClickedByAScriptInTheBrowser) {
  page().click("#click-foreign");
  expectOpenedInBrowser(foreign().url("/page"));
}

TEST_F(NavigationTest, OpensAForeignLinkToANewWindowInTheBrowser) {
  page().click("#foreign-blank");
  expectOpenedInBrowser(foreign().url("/page"));
}

TEST_F(NavigationTest, OpensAMiddleClickedForeignLinkInTheBrowser) {
  page().click("#foreign", MouseButton::middle);
  expectOpenedInBrowser(foreign().url("/page"));
}

TEST_F(NavigationTest, OpensAControlClickedForeignLinkInTheBrowser) {
  page().click("#foreign", MouseButton::left, "Control");
  expectOpenedInBrowser(foreign().url("/page"));
}

TEST_F(NavigationTest, OpensAForeignLinkFromTheContextMenuInTheBrowser) {
  page().click("#foreign", MouseButton::right);
  const auto open = widget("menu item", "Open Link");
  EXPECT_FALSE(hasWidget("menu item", "Open Link in New Window"));
  EXPECT_FALSE(hasWidget("menu item", "Download Linked File"));
  open.press();
  expectOpenedInBrowser(foreign().url("/page"));
}

TEST_F(NavigationTest, OpensAForeignWindowOpenInTheBrowser) {
  page().click("#open-foreign");
  expectOpenedInBrowser(foreign().url("/page"));
}

TEST_F(NavigationTest, OpensAForeignDownloadLinkInTheBrowser) {
  page().click("#foreign-download");
  expectOpenedInBrowser(foreign().url("/file.zip"));
}

class UnusualLinkTest : public NavigationTest, public testing::WithParamInterface<const char*> {};

TEST_P(UnusualLinkTest, OpensInTheBrowser) {
  page().click(GetParam());
  expectOpenedInBrowser(foreign().url("/page"));
}

INSTANTIATE_TEST_SUITE_P(Page, UnusualLinkTest,
                         testing::Values("#detached-foreign", "#drawn", "#changing", "#host",
                                         "#submit-foreign"));

TEST_F(NavigationTest, HandsOverAnAddressAsTheEngineGaveIt) {
  page().click("#unencoded");
  expectOpenedInBrowser(foreign().url("/a[]=1|2#/#room"));
}

TEST_F(NavigationTest, OpensAMailLinkOutsideTheDocumentInTheMailProgram) {
  page().click("#detached-mail");
  expectOpenedInBrowser("mailto:detached@example.com");
}

TEST_F(NavigationTest, DropsAScriptedLoadOfALinkWhoseContextMenuWasDismissed) {
  page().click("#foreign", MouseButton::right);
  widget("menu item", "Open Link");
  desktop().keyboard().chord("Escape");
  waitUntil([&] { return !hasWidget("menu item", "Open Link"); }, "the menu is closed");
  page().evaluate("location.href = '" + foreign().url("/page") + "'");
  PageDriver outer = page();
  outer.frame("#same-frame", "inner").click("#top-foreign");
  expectNothingHappened();
}

TEST_F(NavigationTest, OpensAMailLinkInTheMailProgram) {
  page().click("#mail");
  expectOpenedInBrowser("mailto:user@example.com");
}

TEST_F(NavigationTest, OpensATelephoneLink) {
  page().click("#phone");
  expectOpenedInBrowser("tel:+15550100");
}

TEST_F(NavigationTest, RunsAScriptLinkInThePageOnly) {
  page().click("#javascript");
  page().waitUntilTrue("document.body.dataset.ran === 'yes'");
  expectNothingHappened();
}

TEST_F(NavigationTest, DropsALinkThatThePageCancels) {
  page().click("#cancelled");
  expectNothingHappened();
}

struct Action {
  const char* name;
  const char* frame;
  const char* selector;
};

class DroppedNavigationTest : public NavigationTest, public testing::WithParamInterface<Action> {};

TEST_P(DroppedNavigationTest, OpensNothingAndKeepsThePage) {
  PageDriver outer = page();
  if (std::string(GetParam().frame) == "main") {
    outer.click(GetParam().selector);
  } else {
    outer.frame("#same-frame", GetParam().frame).click(GetParam().selector);
  }
  expectNothingHappened();
}

INSTANTIATE_TEST_SUITE_P(Page, DroppedNavigationTest,
                         testing::Values(Action{"FileLink", "main", "#file"},
                                         Action{"CustomSchemeLink", "main", "#custom"},
                                         Action{"DataLink", "main", "#data"},
                                         Action{"ScriptedForeignLoad", "main", "#script-foreign"},
                                         Action{"ScriptedJavascriptWindow", "main",
                                                "#open-javascript"},
                                         Action{"ForeignPost", "main", "#post-foreign"}),
                         [](const auto& action) { return action.param.name; });

INSTANTIATE_TEST_SUITE_P(
    SameOriginFrame, DroppedNavigationTest,
    testing::Values(Action{"ForeignLink", "inner", "#foreign"},
                    Action{"ForeignLinkForTheWholeWindow", "inner", "#foreign-top"},
                    Action{"ForeignLinkToANewWindow", "inner", "#foreign-blank"},
                    Action{"MailLink", "inner", "#mail"},
                    Action{"ForeignWindowOpen", "inner", "#open-foreign"},
                    Action{"ScriptedForeignLoadOfTheWholeWindow", "inner", "#top-foreign"}),
    [](const auto& action) { return action.param.name; });

TEST_F(NavigationTest, DropsAServerRedirectToAForeignSite) {
  serviceClient().addFault("GET", "/redirecting", {{"redirect", foreign().url("/page")}});
  page().click("#same-redirect");
  serviceClient().waitForRequests("GET", "/redirecting");
  expectNothingHappened();
}

TEST_F(NavigationTest, NeverLoadsAForeignFrame) {
  EXPECT_TRUE(page().exists("#foreign-frame"));
  expectNothingHappened();
}

}  // namespace
}  // namespace navora::driver
