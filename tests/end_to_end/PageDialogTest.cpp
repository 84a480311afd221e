#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "end_to_end/TestPageTest.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

class PageDialogTest : public TestPageTest {
 protected:
  void SetUp() override {
    TestPageTest::SetUp();
    if (!HasFatalFailure()) openTestPage("dialogs.html", "name=main");
  }

  void expectAnswer(const std::string& dialog, const std::string& answer) {
    page().waitUntilTrue("document.body.dataset." + dialog + " !== undefined",
                         "the page has the answer to its " + dialog);
    EXPECT_EQ(page().evaluate("return document.body.dataset." + dialog), answer);
  }
};

TEST_F(PageDialogTest, ShowsAnAlertWithThePagesTextUnchanged) {
  page().click("#alert");
  const auto alert = widget("alert", "Navora");
  EXPECT_TRUE(hasWidget("label", "Plain <b>text</b> & more"));
  widget("push button", "OK").press();
  expectAnswer("alert", "undefined");
  EXPECT_FALSE(hasWidget("alert"));
}

TEST_F(PageDialogTest, ConfirmsWithTheFirstButton) {
  page().click("#confirm");
  widget("alert", "Navora");
  EXPECT_TRUE(hasWidget("label", "Go on?"));
  widget("push button", "Continue").press();
  expectAnswer("confirm", "true");
}

TEST_F(PageDialogTest, DeclinesAConfirmWithTheSecondButton) {
  page().click("#confirm");
  widget("push button", "Cancel").press();
  expectAnswer("confirm", "false");
}

TEST_F(PageDialogTest, DeclinesAConfirmWithEscape) {
  page().click("#confirm");
  widget("push button", "Cancel");
  desktop().keyboard().chord("Escape");
  expectAnswer("confirm", "false");
}

TEST_F(PageDialogTest, ConfirmsWithReturn) {
  page().click("#confirm");
  widget("push button", "Continue");
  desktop().keyboard().chord("Return");
  expectAnswer("confirm", "true");
}

TEST_F(PageDialogTest, PromptsWithTheDefaultTextAndReturnsTheTypedText) {
  page().click("#prompt");
  const auto entry = widget("text");
  EXPECT_EQ(entry.text(), "Old name");
  desktop().keyboard().type("Новое имя");
  waitUntil([&] { return entry.text() == "Новое имя"; }, "the typed name replaces the old one");
  widget("push button", "Save").press();
  expectAnswer("prompt", "Новое имя");
}

TEST_F(PageDialogTest, AnswersACancelledPromptWithNull) {
  page().click("#prompt");
  widget("push button", "Cancel").press();
  expectAnswer("prompt", "null");
}

TEST_F(PageDialogTest, ChoosesAFile) {
  const auto file = desktop().home() / "picture.png";
  writeFile(file, "not really a picture");
  page().click("#files");
  widget("file chooser");
  desktop().keyboard().type(file.string() + "\n");
  expectAnswer("files", "picture.png");
}

TEST_F(PageDialogTest, ChoosesAFileForAnInputOutsideTheDocument) {
  const auto file = desktop().home() / "picture.png";
  writeFile(file, "not really a picture");
  page().click("#detached");
  widget("file chooser");
  desktop().keyboard().type(file.string() + "\n");
  expectAnswer("detached", "picture.png");
}

TEST_F(PageDialogTest, CancelsAFileChooser) {
  page().click("#files");
  widget("file chooser");
  widget("push button", "Cancel").press();
  waitUntil([&] { return !hasWidget("file chooser"); }, "the file chooser is closed");
  EXPECT_EQ(page().evaluate("return document.querySelector('#files').files.length"), 0);
}

TEST_F(PageDialogTest, DeniesThePageEveryPermission) {
  EXPECT_EQ(
      page().evaluate("const outcome = (promise) => promise.then(() => 'allowed', () => 'denied');"
                      "const place = new Promise((resolve, reject) =>"
                      "  navigator.geolocation.getCurrentPosition(resolve, reject));"
                      "return [await place.catch((error) => error.code),"
                      "  await Notification.requestPermission(),"
                      "  await outcome(navigator.clipboard.readText()),"
                      "  await outcome(navigator.mediaDevices.getUserMedia({audio: true})),"
                      "  await outcome(navigator.mediaDevices.getUserMedia({video: true}))]"),
      Json({1, "denied", "denied", "denied", "denied"}));
  page().evaluate(
      "const button = document.createElement('button'); button.id = 'lock';"
      "button.textContent = 'pointer lock'; document.body.prepend(button);"
      "button.onclick = () => button.requestPointerLock();"
      "for (const name of ['change', 'error']) {"
      "  document.addEventListener('pointerlock' + name,"
      "    () => { document.body.dataset.lock = name; });"
      "}");
  page().click("#lock");
  expectAnswer("lock", "error");
  EXPECT_EQ(application().windows().size(), 1u);
}

class FrameDialogTest : public TestPageTest {
 protected:
  void SetUp() override {
    TestPageTest::SetUp();
    if (!HasFatalFailure()) openTestPage("dialog-frames.html");
  }
};

TEST_F(FrameDialogTest, AnswersAlertConfirmAndPromptOfAFrameAtOnceWithNothingShown) {
  PageDriver outer = page();
  PageDriver inner = outer.frame("#frame", "inner");
  for (const std::string dialog : {"alert", "confirm", "prompt"}) {
    inner.click("#" + dialog);
    inner.waitUntilTrue("document.body.dataset." + dialog + " !== undefined",
                        "the frame has the answer to its " + dialog);
    EXPECT_FALSE(hasWidget("alert"));
  }
  EXPECT_EQ(inner.evaluate("return document.body.dataset.alert"), "undefined");
  EXPECT_EQ(inner.evaluate("return document.body.dataset.confirm"), "false");
  EXPECT_EQ(inner.evaluate("return document.body.dataset.prompt"), "null");
}

TEST_F(FrameDialogTest, GivesAFrameNoFiles) {
  PageDriver outer = page();
  PageDriver inner = outer.frame("#frame", "inner");
  inner.click("#files");
  inner.waitUntilTrue("document.body.dataset.files === 'none'", "the frame's chooser is cancelled");
  EXPECT_FALSE(hasWidget("file chooser"));
}

}  // namespace
}  // namespace navora::driver
