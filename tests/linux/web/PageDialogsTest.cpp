#include <filesystem>
#include <regex>
#include <string>

#include <gmock/gmock.h>
#include <gtkmm/window.h>

#include "hosts/linux/web/PageDialogs.h"
#include "linux/support/TestDesktop.h"
#include "linux/support/Widgets.h"
#include "linux/web/WebViewTest.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PageDialogsTest : public WebViewTest {
 protected:
  FrameInfo topFrame() const { return {true, testUrl(server_.url("/page"))}; }
};

TEST_F(PageDialogsTest, AlertsOfTheTopFrameNameItWithoutTheToken) {
  ASSERT_TRUE(loadHtml(""));
  EXPECT_EQ(evaluate("alert('Hello <b>')"), nullptr);
  EXPECT_EQ(evaluate("alert()"), nullptr);
  EXPECT_EQ(evaluate("alert({toString: () => 'object'})"), nullptr);
  ASSERT_EQ(dialogs_.shown.size(), 3U);
  for (const auto& dialog : dialogs_.shown) {
    EXPECT_EQ(dialog.kind, "alert");
    EXPECT_EQ(dialog.frame, topFrame());
  }
  EXPECT_EQ(dialogs_.shown[0].text, "Hello <b>");
  EXPECT_EQ(dialogs_.shown[1].text, "");
  EXPECT_EQ(dialogs_.shown[2].text, "object");
}

TEST_F(PageDialogsTest, ConfirmReturnsTheAnswer) {
  ASSERT_TRUE(loadHtml(""));
  EXPECT_EQ(evaluate("confirm('Sure?')"), true);
  dialogs_.confirmation = false;
  EXPECT_EQ(evaluate("window.confirm('Sure?')"), false);
  ASSERT_EQ(dialogs_.shown.size(), 2U);
  EXPECT_EQ(dialogs_.shown[0].kind, "confirm");
  EXPECT_EQ(dialogs_.shown[0].text, "Sure?");
  EXPECT_EQ(dialogs_.shown[0].frame, topFrame());
}

TEST_F(PageDialogsTest, PromptReturnsTheAnswer) {
  ASSERT_TRUE(loadHtml(""));
  dialogs_.promptAnswer = "Zürich";
  EXPECT_EQ(evaluate("prompt('Where?', 'Riga')"), "Zürich");
  EXPECT_EQ(dialogs_.lastDefaultText, "Riga");
  dialogs_.promptAnswer = "";
  EXPECT_EQ(evaluate("prompt('Where?')"), "");
  EXPECT_EQ(dialogs_.lastDefaultText, "");
  dialogs_.promptAnswer = std::nullopt;
  EXPECT_EQ(evaluate("prompt('Where?')"), nullptr);
  ASSERT_EQ(dialogs_.shown.size(), 3U);
  for (const auto& dialog : dialogs_.shown) {
    EXPECT_EQ(dialog.kind, "prompt");
    EXPECT_EQ(dialog.text, "Where?");
    EXPECT_EQ(dialog.frame, topFrame());
  }
}

TEST_F(PageDialogsTest, ThePageWaitsForTheAnswer) {
  ASSERT_TRUE(loadHtml(""));
  dialogs_.keepWaiting = true;
  run("window.answer = confirm('Sure?'); " +
      std::string("webkit.messageHandlers.notes.postMessage(window.answer)"));
  ASSERT_TRUE(waitUntil([this] { return dialogs_.waiting.size() == 1; }));
  runPendingEvents();
  EXPECT_THAT(messages_.received, IsEmpty());
  dialogs_.waiting[0]();
  dialogs_.waiting.clear();
  ASSERT_TRUE(waitUntil([this] { return messages_.received.size() == 1; }));
  EXPECT_EQ(messages_.received[0].body, "true");
}

TEST_F(PageDialogsTest, DialogsOfOtherFramesNameNoFrame) {
  const std::string ask =
      "<script>alert('a'); confirm('c'); prompt('p', ''); parent.postMessage(1, '*');</script>";
  server_.serveHtml("/frame", ask);
  ASSERT_TRUE(
      loadHtml("<script>window.reports = 0; onmessage = () => ++reports;</script>"
               "<iframe src=/frame></iframe>"
               "<iframe srcdoc=\"" +
               ask + "\"></iframe>"));
  ASSERT_TRUE(waitUntil([this] { return evaluate("reports") == 2; }));
  ASSERT_EQ(dialogs_.shown.size(), 6U);
  for (const auto& dialog : dialogs_.shown) {
    EXPECT_EQ(dialog.frame, FrameInfo{}) << dialog.kind;
    EXPECT_EQ(dialog.text.size(), 1U) << dialog.text;
  }
}

TEST_F(PageDialogsTest, AFrameCannotGuessTheToken) {
  server_.serveHtml(
      "/frame",
      "<script>parent.postMessage(String(parent.alert) + parent.confirm + parent.prompt"
      " + JSON.stringify(Object.getOwnPropertyNames(parent.alert)), '*');</script>");
  ASSERT_TRUE(
      loadHtml("<script>onmessage = (event) => window.seen = event.data;</script>"
               "<iframe src=/frame></iframe>"));
  ASSERT_TRUE(waitUntil([this] { return evaluate("typeof seen") == "string"; }));
  EXPECT_FALSE(std::regex_search(evaluate("seen").get<std::string>(), std::regex("[0-9a-f]{32}")));
}

TEST_F(PageDialogsTest, APageThatReplacesBuiltInsDoesNotLearnTheToken) {
  ASSERT_TRUE(loadHtml(R"(<script>
    window.seen = [];
    const spy = (name, object, method) => {
      const original = object[method];
      object[method] = function (...values) {
        for (const value of values) seen[seen.length] = typeof value === 'string' ? value : '';
        return Reflect.construct === original ? null : this;
      };
    };
    for (const method of ['concat', 'toString', 'valueOf', 'replace', 'trim'])
      spy('String', String.prototype, method);
    Reflect.apply = (target, self, values) => { seen[seen.length] = values[0]; };
    Function.prototype.apply = function (self, values) { seen[seen.length] = values[0]; };
    Function.prototype.call = function (self, value) { seen[seen.length] = value; };
    window.String = (value) => { seen[seen.length] = value; return value; };
    Object.defineProperty(Array.prototype, 0, {set(value) { seen[seen.length] = value; }});
    </script>)"));
  EXPECT_EQ(evaluate("alert('text'); confirm('text'); prompt('text'); null"), nullptr);
  ASSERT_EQ(dialogs_.shown.size(), 3U);
  for (const auto& dialog : dialogs_.shown) {
    EXPECT_EQ(dialog.text, "text");
    EXPECT_EQ(dialog.frame, topFrame());
  }
  const auto seen = evaluate("seen.filter((value) => /[0-9a-f]{32}/.test(value)).length");
  EXPECT_EQ(seen, 0);
}

TEST_F(PageDialogsTest, WithoutADelegateDialogsReturnTheirDefaults) {
  ASSERT_TRUE(loadHtml(""));
  view_->setPageDialogDelegate(nullptr);
  EXPECT_EQ(evaluate("alert('a'); [confirm('c'), prompt('p', 'default')]"), (Json{false, nullptr}));
  EXPECT_THAT(dialogs_.shown, IsEmpty());
}

// File choosers need a user activation, so these tests click into the page.
class PageFileChooserTest : public PageDialogsTest {
 protected:
  void show(const std::string& html) {
    makeView();
    window_.set_default_size(600, 400);
    gtk_container_add(GTK_CONTAINER(window_.gobj()), view_->widget());
    gtk_widget_show(view_->widget());
    window_.present();
    ASSERT_TRUE(loadHtml(html));
    ASSERT_TRUE(waitUntil([this] { return isReadyForKeys(window_); }));
  }
  void click() {
    TestDesktop::current().mouse().click(infoOf(window_).content.center());
    ASSERT_TRUE(waitUntil([this] { return !dialogs_.shown.empty(); }));
  }

  static constexpr const char* style =
      "<style>* {margin: 0} input, iframe {position: fixed; inset: 0; width: 100%; height: 100%; "
      "border: 0}</style>";
  const TemporaryDirectory folder_{"navora-files"};
  Gtk::Window window_;
};

TEST_F(PageFileChooserTest, TheTopFrameReceivesTheChosenFiles) {
  writeFile(folder_.path() / "first.txt", "1");
  writeFile(folder_.path() / "zweite.txt", "2");
  dialogs_.files = {folder_.path() / "first.txt", folder_.path() / "zweite.txt"};
  show(std::string(style) + "<input type=file multiple id=input>");
  click();
  EXPECT_EQ(dialogs_.shown[0].kind, "files");
  EXPECT_EQ(dialogs_.shown[0].frame, topFrame());
  EXPECT_TRUE(dialogs_.lastParameters.allowsMultipleSelection);
  EXPECT_FALSE(dialogs_.lastParameters.allowsDirectories);
  ASSERT_TRUE(waitUntil([this] { return evaluate("input.files.length") == 2; }));
  EXPECT_EQ(evaluate("[...input.files].map((file) => file.name)"),
            (Json{"first.txt", "zweite.txt"}));
}

TEST_F(PageFileChooserTest, AChooserOfAnotherFrameNamesNoFrame) {
  server_.serveHtml("/frame", std::string(style) + "<input type=file id=input>");
  show(std::string(style) + "<iframe src=/frame></iframe>");
  click();
  EXPECT_FALSE(dialogs_.shown[0].frame.isMainFrame);
  EXPECT_EQ(dialogs_.shown[0].frame.requestUrl, testUrl(server_.url("/frame")));
  EXPECT_FALSE(dialogs_.lastParameters.allowsMultipleSelection);
  EXPECT_EQ(evaluate("frames[0].input.files.length"), 0);
}

TEST_F(PageFileChooserTest, AnInputForFoldersRequestsFolders) {
  show(std::string(style) + "<input type=file webkitdirectory id=input>");
  click();
  EXPECT_TRUE(dialogs_.lastParameters.allowsDirectories);
}

}  // namespace
}  // namespace navora
