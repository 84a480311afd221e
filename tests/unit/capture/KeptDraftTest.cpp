#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "capture/KeptDraft.h"
#include "fakes/FakePlatform.h"

namespace navora {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class KeptDraftTest : public testing::Test {
 protected:
  std::unique_ptr<KeptDraft> make() {
    return std::make_unique<KeptDraft>(
        KeptDraft::Dependencies{.backgroundQueue = platform_.backgroundQueue(),
                                .mainQueue = platform_.mainQueue(),
                                .system = platform_.system(),
                                .file = platform_.makePrivateFile("draft"),
                                .current = [this] { return current_; }});
  }
  void change(const std::string& text) {
    current_.text = text;
    kept_->draftDidChange();
  }
  void advance(int time) { platform_.mainQueue().advance(milliseconds(time)); }
  FakeBackgroundQueue& background() { return platform_.backgroundQueue(); }
  FakePrivateFile::Disk& disk() { return platform_.disk("draft"); }
  std::string storedText() {
    const auto draft = disk().content ? CaptureDraft::parse(*disk().content) : std::nullopt;
    return draft ? draft->text : "nothing";
  }

  FakePlatform platform_;
  CaptureDraft current_;
  std::unique_ptr<KeptDraft> kept_ = make();
};

TEST_F(KeptDraftTest, WritesAChangeInTheBackgroundWithinHalfASecond) {
  kept_->restore();
  change("a");
  advance(200);
  change("ab");
  advance(200);
  change("abc");
  EXPECT_EQ(disk().writes, 0);
  background().finishAll();
  EXPECT_EQ(storedText(), "ab");
  advance(250);
  background().finishAll();
  EXPECT_EQ(storedText(), "abc");
  EXPECT_EQ(disk().writes, 2);
}

TEST_F(KeptDraftTest, LongTypingIsWrittenAllTheTime) {
  kept_->restore();
  std::string text;
  for (int key = 0; key < 100; ++key) {
    change(text += "x");
    advance(100);
    background().finishAll();
    EXPECT_LE(text.size() - (disk().content ? storedText().size() : 0), 3u) << key;
  }
}

TEST_F(KeptDraftTest, WritesNothingIfNothingHasChanged) {
  kept_->restore();
  change("a");
  advance(500);
  kept_->draftDidChange();
  kept_->store();
  advance(500);
  background().finishAll();
  EXPECT_EQ(disk().writes, 1);
}

TEST_F(KeptDraftTest, DeletesTheFileOfAnEmptyDraft) {
  kept_->restore();
  change("a");
  advance(500);
  change("");
  advance(500);
  background().finishAll();
  EXPECT_EQ(disk().content, std::nullopt);
}

TEST_F(KeptDraftTest, RestoresTheDraftOfAnEarlierProcess) {
  kept_->restore();
  change("kept");
  kept_->flush();
  kept_ = make();
  EXPECT_EQ(kept_->restore(), current_);
  kept_->store();
  background().finishAll();
  EXPECT_EQ(disk().writes, 1);
}

TEST_F(KeptDraftTest, FlushWaitsForWritesUnderWay) {
  kept_->restore();
  change("first");
  kept_->store();
  change("second");
  kept_->flush();
  EXPECT_EQ(background().waiting(), 0u);
  EXPECT_EQ(storedText(), "second");
}

TEST_F(KeptDraftTest, WaitsUntilTheDraftIsOnTheDisk) {
  kept_->restore();
  current_.text = "a";
  kept_->store();
  // Nothing has changed since, but the write has not finished.
  const auto task = kept_->storeAndWait();
  EXPECT_FALSE(task.isFinished());
  background().workOnNext();
  background().completeNext();
  EXPECT_FALSE(task.isFinished());
  background().finishAll();
  EXPECT_TRUE(task.isFinished());
  EXPECT_EQ(disk().writes, 1);
}

TEST_F(KeptDraftTest, DoesNotWaitForASlowDiskForLong) {
  kept_->restore();
  current_.text = "a";
  const auto task = kept_->storeAndWait();
  advance(1999);
  EXPECT_FALSE(task.isFinished());
  advance(1);
  EXPECT_TRUE(task.isFinished());
}

TEST_F(KeptDraftTest, SetsADamagedFileAsideAndGoesOn) {
  disk().content = "{\"version\":1,";
  EXPECT_EQ(kept_->restore(), CaptureDraft());
  EXPECT_EQ(disk().aside, "{\"version\":1,");
  EXPECT_THAT(
      platform_.system().logged,
      ElementsAre("Navora: draft of the quick note: damaged; the file is kept as file.damaged"));
  change("new");
  kept_->flush();
  EXPECT_EQ(storedText(), "new");
}

TEST_F(KeptDraftTest, NeverOverwritesAFileThatItCanNeitherReadNorSetAside) {
  disk().content = "unreadable";
  disk().failure = PlatformError{"POSIX", 5, "Input/output error"};
  EXPECT_EQ(kept_->restore(), CaptureDraft());
  disk().failure.reset();
  change("new");
  kept_->flush();
  const auto task = kept_->storeAndWait();
  EXPECT_TRUE(task.isFinished());
  EXPECT_EQ(disk().content, "unreadable");
  EXPECT_THAT(
      platform_.system().logged,
      ElementsAre(
          "Navora: draft of the quick note: Input/output error; the file is left as it is"));
}

TEST_F(KeptDraftTest, ReportsAFullDiskOnceAndTriesAgainAtTheNextChange) {
  kept_->restore();
  disk().failure = PlatformError{"POSIX", 28, "No space left on device"};
  for (const char* text : {"a", "ab", "abc"}) {
    change(text);
    advance(500);
    background().finishAll();
  }
  EXPECT_THAT(
      platform_.system().logged,
      ElementsAre("Navora: draft of the quick note: it cannot be kept: No space left on device"));
  disk().failure.reset();
  // Even without a change of the text.
  kept_->draftDidChange();
  advance(500);
  background().finishAll();
  EXPECT_EQ(storedText(), "abc");
}

TEST_F(KeptDraftTest, DeletesWhatAnInterruptedWriteHasLeft) {
  kept_->restore();
  EXPECT_EQ(disk().removals, 1);
  EXPECT_THAT(platform_.system().logged, IsEmpty());
}

TEST_F(KeptDraftTest, StartsWithAnEmptyDraftWhereNothingCanBeDeleted) {
  disk().removalFailure = PlatformError{"POSIX", 30, "Read-only file system"};
  EXPECT_EQ(kept_->restore(), CaptureDraft());
  EXPECT_THAT(platform_.system().logged, testing::SizeIs(1));
}

TEST_F(KeptDraftTest, ReportsAFailureOfTheLastWrite) {
  kept_->restore();
  disk().failure = PlatformError{"POSIX", 28, "No space left on device"};
  change("last words");
  kept_->flush();
  EXPECT_THAT(platform_.system().logged, testing::SizeIs(1));
}

TEST_F(KeptDraftTest, WaitingWithoutAChangeIsNoSuccess) {
  kept_->restore();
  disk().failure = PlatformError{"POSIX", 28, "No space left on device"};
  change("a");
  kept_->store();
  kept_->store();
  background().finishAll();
  kept_->store();
  background().finishAll();
  EXPECT_THAT(platform_.system().logged, testing::SizeIs(1));
}

TEST_F(KeptDraftTest, CanBeDestroyedWhileItWrites) {
  kept_->restore();
  change("a");
  kept_->store();
  kept_.reset();
  background().finishAll();
  EXPECT_EQ(storedText(), "a");
}

}  // namespace
}  // namespace navora
