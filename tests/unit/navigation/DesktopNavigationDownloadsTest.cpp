#include <filesystem>
#include <map>
#include <string>

#include <gmock/gmock.h>

#include "unit/navigation/DesktopNavigationTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const PlatformError connectionLost{"NSURLErrorDomain", -1005, "The connection was lost."};

class DesktopNavigationDownloadsTest : public DesktopNavigationTest {
 protected:
  // Starts a download that only the navigation retains.
  FakeDownload& start(const std::string& name = "a") {
    auto download = std::make_shared<FakeDownload>(log_(), name);
    FakeDownload& fake = *download;
    navigation_->navigationDidBecomeDownload(std::move(download));
    return fake;
  }
  // Starts a download for which the user has chosen `destination`. It is destroyed if that cannot
  // be written.
  FakeDownload& startInto(const std::filesystem::path& destination) {
    FakeDownload& download = start();
    dialogs().savePanels.answerAhead(destination);
    download.askDestination("summary.pdf");
    log_().take();
    return download;
  }
  void write(FakeDownload& download, const std::string& content) {
    ASSERT_TRUE(download.destination());
    disk().files[*download.destination()] = content;
  }
  FakeDisk& disk() { return platform_.disk(); }

  using Files = std::map<std::filesystem::path, std::string>;

 private:
  EventLog& log_() { return platform_.log(); }
};

TEST_F(DesktopNavigationDownloadsTest, AreRetainedAndServedByTheNavigation) {
  const FakeDownload& download = start();
  EXPECT_EQ(download.delegate(), navigation_.get());
  EXPECT_THAT(log().take(), IsEmpty()) << "nothing is shown, nothing is cancelled";
}

struct SuggestedName {
  std::string suggested;
  std::string offered;
};

class DesktopNavigationSuggestedNameTest : public DesktopNavigationDownloadsTest,
                                           public testing::WithParamInterface<SuggestedName> {};

TEST_P(DesktopNavigationSuggestedNameTest, IsOfferedWithoutFolders) {
  start().askDestination(GetParam().suggested);
  EXPECT_THAT(dialogs().savePanels.requests(),
              ElementsAre(FakeDialogs::SavePanelRequest{window_.get(), GetParam().offered}));
}

INSTANTIATE_TEST_SUITE_P(Names, DesktopNavigationSuggestedNameTest,
                         testing::Values(SuggestedName{"summary.pdf", "summary.pdf"},
                                         SuggestedName{"reports/2024/summary.pdf", "summary.pdf"},
                                         SuggestedName{"/etc/passwd", "passwd"},
                                         SuggestedName{"../../.profile", ".profile"},
                                         SuggestedName{"a/", "a"}, SuggestedName{"a/b//", "b"},
                                         SuggestedName{"a//b", "b"}, SuggestedName{"", ""},
                                         SuggestedName{"/", ""}, SuggestedName{"///", ""},
                                         SuggestedName{"..", ".."}, SuggestedName{"a/..", ".."},
                                         SuggestedName{"C:\\data\\a.txt", "C:\\data\\a.txt"},
                                         SuggestedName{"отчёты/итог.pdf", "итог.pdf"}));

TEST_F(DesktopNavigationDownloadsTest, AreSavedWhereTheUserChooses) {
  FakeDownload& download = start();
  download.askDestination("summary.pdf");
  EXPECT_EQ(download.destination(), std::nullopt);
  dialogs().savePanels.answer("/home/user/other.pdf");
  write(download, "the content");
  download.finish();
  disk().finishWriting();
  EXPECT_EQ(disk().files, (Files{{"/home/user/other.pdf", "the content"}}));
  EXPECT_THAT(dialogs().alerts.requests(), IsEmpty());
}

TEST_F(DesktopNavigationDownloadsTest, ReplaceAFileOnlyWhenTheyAreComplete) {
  disk().files["/home/user/summary.pdf"] = "the old content";
  FakeDownload& download = startInto("/home/user/summary.pdf");
  write(download, "the new content");
  EXPECT_EQ(disk().files["/home/user/summary.pdf"], "the old content");
  download.finish();
  EXPECT_EQ(disk().files["/home/user/summary.pdf"], "the old content");
  EXPECT_THAT(log().take(), IsEmpty()) << "retained until the file is in place";
  disk().finishWriting();
  EXPECT_EQ(disk().files, (Files{{"/home/user/summary.pdf", "the new content"}}));
  EXPECT_THAT(log().take(), ElementsAre("file.place /home/user/summary.pdf", "download.release a"));
}

TEST_F(DesktopNavigationDownloadsTest, LeaveTheOldFileWhenTheyFail) {
  disk().files["/home/user/summary.pdf"] = "the old content";
  FakeDownload& download = startInto("/home/user/summary.pdf");
  write(download, "the new con");
  download.fail(connectionLost);
  EXPECT_EQ(disk().files, (Files{{"/home/user/summary.pdf", "the old content"}}));
  EXPECT_THAT(log().take(), ElementsAre("download.release a", "file.remove /home/user/summary.pdf",
                                        "dialogs.alert Не удалось скачать файл"));
}

TEST_F(DesktopNavigationDownloadsTest, LeaveTheOldFileWhenTheNavigationIsDestroyed) {
  disk().files["/home/user/summary.pdf"] = "the old content";
  write(startInto("/home/user/summary.pdf"), "the new con");
  navigation_.reset();
  EXPECT_EQ(disk().files, (Files{{"/home/user/summary.pdf", "the old content"}}));
  EXPECT_THAT(log().take(), ElementsAre("download.cancel a", "file.remove /home/user/summary.pdf"));
}

TEST_F(DesktopNavigationDownloadsTest, ArePutInPlaceEvenIfTheNavigationIsDestroyedMeanwhile) {
  FakeDownload& download = startInto("/home/user/summary.pdf");
  write(download, "the content");
  download.finish();
  navigation_.reset();
  EXPECT_EQ(disk().files, (Files{{"/home/user/summary.pdf", "the content"}}));
  disk().finishWriting();
  EXPECT_THAT(dialogs().alerts.requests(), IsEmpty());
}

TEST_F(DesktopNavigationDownloadsTest, AreReportedAsFailedWhenTheyCannotBePutInPlace) {
  FakeDownload& download = startInto("/home/user/summary.pdf");
  write(download, "the content");
  disk().files["/home/user/summary.pdf"] = "another program's";
  download.finish();
  disk().finishWriting();
  EXPECT_EQ(disk().files, (Files{{"/home/user/summary.pdf", "another program's"}}));
  EXPECT_THAT(dialogs().alerts.requests(),
              ElementsAre(AlertDescription{
                  "Не удалось скачать файл", "The file exists", {}, std::nullopt}));
}

TEST_F(DesktopNavigationDownloadsTest, TellWhyTheChosenFileCannotBeWritten) {
  disk().refusal = PlatformError{"Disk", 13, "Permission denied"};
  startInto("/root/summary.pdf");
  EXPECT_THAT(dialogs().alerts.requests(),
              ElementsAre(AlertDescription{
                  "Не удалось скачать файл", "Permission denied", {}, std::nullopt}));
}

TEST_F(DesktopNavigationDownloadsTest, WriteNothingIfTheyFailWhileTheSavePanelIsOpen) {
  FakeDownload& download = start();
  download.askDestination("summary.pdf");
  download.fail(connectionLost);
  log().take();
  dialogs().savePanels.answer("/home/user/summary.pdf");
  EXPECT_THAT(log().take(), IsEmpty());
}

class DesktopNavigationForeignResponseTest : public DesktopNavigationDownloadsTest,
                                             public testing::WithParamInterface<const char*> {};

// The engine may have followed a redirect without asking.
TEST_P(DesktopNavigationForeignResponseTest, IsNotSaved) {
  const std::string url = GetParam();
  start().askDestination("summary.pdf", Url::parse(url));
  EXPECT_THAT(dialogs().savePanels.requests(), IsEmpty());
  EXPECT_THAT(log().take(),
              ElementsAre("download.release a", "dialogs.alert Не удалось скачать файл"));
}

INSTANTIATE_TEST_SUITE_P(OutOfTheOrigin, DesktopNavigationForeignResponseTest,
                         testing::Values("https://storage.example/7", "http://navora.example/7",
                                         "https://navora.example:444/7", ""));

// A cancellation is reported like any other failure.
TEST_F(DesktopNavigationDownloadsTest, AreReportedAsFailedWhenTheSavePanelIsDismissed) {
  FakeDownload& download = start();
  download.askDestination("summary.pdf");
  log().take();
  dialogs().savePanels.answer(std::nullopt);
  EXPECT_THAT(log().take(),
              ElementsAre("download.release a", "dialogs.alert Не удалось скачать файл"));
}

TEST_F(DesktopNavigationDownloadsTest, AreCancelledIfTheWindowIsDestroyedBeforeTheSheet) {
  FakeDownload& download = start();
  window_.reset();
  download.askDestination("summary.pdf");
  EXPECT_THAT(dialogs().savePanels.requests(), IsEmpty());
  EXPECT_THAT(log().take(),
              ElementsAre("download.release a", "dialogs.alert Не удалось скачать файл"));
}

TEST_F(DesktopNavigationDownloadsTest, FollowRedirectsWithinTheOrigin) {
  FakeDownload& download = start();
  EXPECT_TRUE(download.redirect(testUrl("https://navora.example/files/7")));
  EXPECT_TRUE(download.redirect(testUrl("https://navora.example:443/files/7")));
  EXPECT_THAT(log().take(), IsEmpty());
}

class DesktopNavigationRedirectTest : public DesktopNavigationDownloadsTest,
                                      public testing::WithParamInterface<const char*> {};

TEST_P(DesktopNavigationRedirectTest, IsRefusedAndReported) {
  const std::string url = GetParam();
  EXPECT_FALSE(start().redirect(url.empty() ? std::nullopt : std::optional(testUrl(url))));
  EXPECT_THAT(log().take(),
              ElementsAre("download.release a", "dialogs.alert Не удалось скачать файл"));
}

INSTANTIATE_TEST_SUITE_P(OutOfTheOrigin, DesktopNavigationRedirectTest,
                         testing::Values("https://storage.example/7", "http://navora.example/7",
                                         "https://navora.example:444/7",
                                         "https://user@navora.example/7",
                                         "https://navora.example.remote.example/7",
                                         "data:text/plain,7", ""));

TEST_F(DesktopNavigationDownloadsTest, AreReleasedSilentlyWhenTheyFinish) {
  start().finish();
  EXPECT_THAT(log().take(), ElementsAre("download.release a"));
}

TEST_F(DesktopNavigationDownloadsTest, AreReleasedBeforeTheirFailureIsShown) {
  start().fail(connectionLost);
  EXPECT_THAT(log().take(),
              ElementsAre("download.release a", "dialogs.alert Не удалось скачать файл"));
}

TEST_F(DesktopNavigationDownloadsTest, ShowThePlatformsDescriptionOfAFailure) {
  start().fail(connectionLost);
  EXPECT_THAT(dialogs().alerts.requests(),
              ElementsAre(AlertDescription{
                  "Не удалось скачать файл", "The connection was lost.", {}, std::nullopt}));
  dialogs().alerts.answer({});
}

TEST_F(DesktopNavigationDownloadsTest, ShowAFailureInTheCurrentLanguage) {
  locale_.setCatalogs(R"({"en": {"Не удалось скачать файл": "The file could not be downloaded"}})");
  DesktopLocale::requested = "en";
  start().fail(connectionLost);
  EXPECT_EQ(dialogs().alerts.requests().front().messageText, "The file could not be downloaded");
}

TEST_F(DesktopNavigationDownloadsTest, ShowAFailureEvenWithoutAWindow) {
  FakeDownload& download = start();
  window_.reset();
  download.fail(connectionLost);
  EXPECT_THAT(dialogs().alerts.requests(), testing::SizeIs(1));
}

TEST_F(DesktopNavigationDownloadsTest, RunConcurrently) {
  FakeDownload& first = start("first");
  FakeDownload& second = start("second");
  first.askDestination("1.txt");
  second.askDestination("2.txt");
  dialogs().savePanels.answer("/home/2.txt");
  dialogs().savePanels.answer("/home/1.txt");
  write(first, "one");
  write(second, "two");
  second.finish();
  first.finish();
  disk().finishWriting();
  EXPECT_EQ(disk().files, (Files{{"/home/1.txt", "one"}, {"/home/2.txt", "two"}}));
}

TEST_F(DesktopNavigationDownloadsTest, AreReleasedIndividually) {
  FakeDownload& first = start("first");
  FakeDownload& second = start("second");
  FakeDownload& third = start("third");
  second.finish();
  EXPECT_THAT(log().take(), ElementsAre("download.release second"));
  first.fail(connectionLost);
  EXPECT_THAT(log().take(),
              ElementsAre("download.release first", "dialogs.alert Не удалось скачать файл"));
  third.finish();
  EXPECT_THAT(log().take(), ElementsAre("download.release third"));
}

// An action and its response may both report the same download.
TEST_F(DesktopNavigationDownloadsTest, AreReleasedEvenIfReportedTwice) {
  auto download = std::make_shared<FakeDownload>(log(), "a");
  FakeDownload& fake = *download;
  navigation_->navigationDidBecomeDownload(download);
  navigation_->navigationDidBecomeDownload(std::move(download));
  fake.finish();
  EXPECT_THAT(log().take(), ElementsAre("download.release a"));
}

TEST_F(DesktopNavigationDownloadsTest, AreCancelledSilentlyWhenTheNavigationIsDestroyed) {
  start("first");
  start("second");
  navigation_.reset();
  EXPECT_THAT(log().take(),
              testing::UnorderedElementsAre("download.cancel first", "download.cancel second"));
}

TEST_F(DesktopNavigationDownloadsTest, HaveNoDelegateAfterTheNavigationIsDestroyed) {
  const auto download = std::make_shared<FakeDownload>(log(), "held");
  navigation_->navigationDidBecomeDownload(download);
  navigation_.reset();
  EXPECT_EQ(download->delegate(), nullptr);
}

TEST_F(DesktopNavigationDownloadsTest, IgnoreASavePanelAnsweredAfterTheNavigationIsDestroyed) {
  start().askDestination("summary.pdf");
  navigation_.reset();
  log().take();
  dialogs().savePanels.answer("/home/summary.pdf");
  EXPECT_THAT(log().take(), IsEmpty());
}

}  // namespace
}  // namespace navora
