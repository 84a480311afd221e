#include <cstdlib>
#include <filesystem>

#include <gmock/gmock.h>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/ArchiveSignature.h"
#include "hosts/linux/installation/FeedSignature.h"
#include "linux/installation/FileTree.h"
#include "linux/installation/SampleVersion.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

// Runs navora-make-update as a publisher does.
class MakeUpdateTest : public testing::Test {
 protected:
  MakeUpdateTest() {
    makeSampleVersion(folder_.path() / "installed", "2.0");
    writeFile(keyFile_, key_.secretText());
  }
  bool run(const std::string& arguments, const std::string& before = "") const {
    const std::string command = "cd " + folder_.path().string() + " && " + before +
                                NAVORA_MAKE_UPDATE " " + arguments + " >output 2>&1";
    return std::system(command.c_str()) == 0;
  }
  bool release(const std::string& version, const std::string& more = "",
               const std::string& url = "https://updates.example/navora") const {
    return run("release --installation installed --version '" + version + "' --key key --url '" +
               url + "' --output releases " + more);
  }
  std::string feed() const { return readFile(folder_.path() / "releases" / "appcast.xml"); }
  std::vector<AppcastEntry> entries() const {
    const auto read =
        readAppcast(feed(), *Url::parse("https://updates.example/navora/appcast.xml"));
    return read ? *read : std::vector<AppcastEntry>();
  }

  const TemporaryDirectory folder_;
  const std::filesystem::path keyFile_ = folder_.path() / "key";
  const SigningKey key_ = SigningKey::make();
};

TEST_F(MakeUpdateTest, AReleaseIsAnArchiveAndItsItemInTheFeed) {
  ASSERT_TRUE(release("2.0", "--phased 3600 --minimum-system 2.36 --link https://a.example/"));
  ASSERT_EQ(entries().size(), 1U);
  const auto entry = entries().front();
  EXPECT_EQ(entry.version, "2.0");
  EXPECT_EQ(entry.phasedRolloutInterval, std::chrono::hours(1));
  EXPECT_TRUE(entry.published);
  ASSERT_TRUE(entry.archive);
  EXPECT_EQ(entry.archive->url.string(), "https://updates.example/navora/navora-2.0.tar.zst");
  EXPECT_EQ(verifyArchive(folder_.path() / "releases" / "navora-2.0.tar.zst", entry.archive->length,
                          entry.archive->signature, publicKeyOf(key_)),
            std::nullopt);
  EXPECT_EQ(checkFeedSignature(feed(), publicKeyOf(key_)), FeedSignature::missing);
}

TEST_F(MakeUpdateTest, SignsTheWholeFeedOnRequest) {
  ASSERT_TRUE(release("2.0", "--sign-feed"));
  EXPECT_EQ(checkFeedSignature(feed(), publicKeyOf(key_)), FeedSignature::valid);
  ASSERT_TRUE(release("2.1", "--sign-feed"));
  EXPECT_EQ(checkFeedSignature(feed(), publicKeyOf(key_)), FeedSignature::valid);
  EXPECT_EQ(entries().size(), 2U);
  ASSERT_TRUE(release("2.2"));
  EXPECT_EQ(checkFeedSignature(feed(), publicKeyOf(key_)), FeedSignature::missing);
}

TEST_F(MakeUpdateTest, TheVersionIsTheBuildsUnlessStated) {
  ASSERT_TRUE(
      run("release --installation installed --key key --url https://updates.example/navora "
          "--output releases"));
  ASSERT_EQ(entries().size(), 1U);
  EXPECT_EQ(entries().front().version, NAVORA_VERSION);
}

TEST_F(MakeUpdateTest, TheUrlMayBeRelativeToTheFeed) {
  ASSERT_TRUE(release("2.0", "", "."));
  ASSERT_EQ(entries().size(), 1U);
  EXPECT_EQ(entries().front().archive->url.string(),
            "https://updates.example/navora/navora-2.0.tar.zst");
}

TEST_F(MakeUpdateTest, AReleaseThatTheUpdaterWouldRefuseIsNotPublished) {
  ASSERT_TRUE(release("2.0"));
  const std::string before = feed();
  EXPECT_FALSE(release("2.1%"));
  EXPECT_FALSE(release(std::string(101, '1')));
  EXPECT_FALSE(release("2.1", "--link 'http://[broken'"));
  EXPECT_FALSE(release("2.1", "--phased soon"));
  EXPECT_FALSE(release("2.1", "", "http://updates.example"));
  EXPECT_FALSE(release("2.1", "", "ftp://updates.example"));
  EXPECT_EQ(feed(), before);
}

TEST_F(MakeUpdateTest, ARefusedReleaseLeavesNoFile) {
  EXPECT_FALSE(release("2.1%"));
  EXPECT_FALSE(release("2.1", "--link 'http://[broken'"));
  EXPECT_FALSE(release("2.1", "--phased soon"));
  EXPECT_FALSE(release("2.1", "", "http://updates.example"));
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "releases"));
  std::filesystem::create_symlink("/", folder_.path() / "installed/outside");
  EXPECT_FALSE(release("2.1"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path() / "releases"));
}

TEST_F(MakeUpdateTest, ALinkThatTheApplicationWouldNotOpenIsRefused) {
  EXPECT_FALSE(release("2.0", "--link http://a.example/"));
  EXPECT_THAT(readFile(folder_.path() / "output"), testing::HasSubstr("https"));
  EXPECT_FALSE(release("2.0", "--link notes.html"));
}

TEST_F(MakeUpdateTest, APublishedArchiveIsNotOverwritten) {
  ASSERT_TRUE(release("2.0"));
  const auto before = describeTree(folder_.path() / "releases");
  writeFile(folder_.path() / "installed/share/navora/changed", "other content");
  EXPECT_FALSE(release("2.0"));
  EXPECT_THAT(readFile(folder_.path() / "output"), testing::HasSubstr("other content"));
  EXPECT_EQ(describeTree(folder_.path() / "releases"), before);
}

TEST_F(MakeUpdateTest, AnArchiveThatIsPublishedBesideAnUnusableFeedIsNotOverwritten) {
  const auto archive = folder_.path() / "releases" / "navora-2.0.tar.zst";
  writeFile(archive, "published");
  writeFile(folder_.path() / "releases" / "appcast.xml", "precious");
  EXPECT_FALSE(release("2.0"));
  EXPECT_EQ(readFile(archive), "published");
}

TEST_F(MakeUpdateTest, TheItemOfAPublishedArchiveMayChange) {
  ASSERT_TRUE(release("2.0"));
  EXPECT_FALSE(entries().front().isCritical);
  const auto archive = folder_.path() / "releases" / "navora-2.0.tar.zst";
  const auto written = std::filesystem::last_write_time(archive);
  ASSERT_TRUE(release("2.0", "--critical"));
  ASSERT_EQ(entries().size(), 1U);
  EXPECT_TRUE(entries().front().isCritical);
  EXPECT_EQ(std::filesystem::last_write_time(archive), written);
}

TEST_F(MakeUpdateTest, AReleaseLeavesOnlyTheArchiveAndTheFeed) {
  ASSERT_TRUE(release("2.0"));
  EXPECT_EQ(describeTree(folder_.path() / "releases").size(), 2U);
}

TEST_F(MakeUpdateTest, AnotherDocumentIsNotOverwritten) {
  writeFile(folder_.path() / "releases" / "appcast.xml", "precious");
  EXPECT_FALSE(release("2.0"));
  EXPECT_EQ(feed(), "precious");
}

TEST_F(MakeUpdateTest, AnUnreadableFeedIsNotReplaced) {
  std::filesystem::create_directories(folder_.path() / "releases" / "appcast.xml");
  EXPECT_FALSE(release("2.0"));
  EXPECT_THAT(readFile(folder_.path() / "output"), testing::HasSubstr("is not a feed"));
}

TEST_F(MakeUpdateTest, WithoutTheKeyThereIsNoRelease) {
  writeFile(keyFile_, "no key");
  EXPECT_FALSE(release("2.0"));
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "releases" / "appcast.xml"));
}

TEST_F(MakeUpdateTest, ANewKeyIsPrivateAndDoesNotOverwriteAFile) {
  ASSERT_TRUE(run("key new"));
  const auto file = folder_.path() / "new";
  EXPECT_EQ(describeTree(folder_.path()).at("new"), "600 file " + readFile(file));
  const auto key = SigningKey::fromFile(file);
  ASSERT_TRUE(key);
  EXPECT_EQ(readFile(folder_.path() / "output"), key->publicText() + "\n");
  EXPECT_FALSE(run("key new"));
  EXPECT_EQ(readFile(file), key->secretText() + "\n");
}

TEST_F(MakeUpdateTest, ANewKeyIsNotWrittenThroughALink) {
  std::filesystem::create_symlink(folder_.path() / "elsewhere", folder_.path() / "new");
  EXPECT_FALSE(run("key new"));
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "elsewhere"));
}

TEST_F(MakeUpdateTest, AKeyThatCannotBeWrittenLeavesNoFile) {
  EXPECT_FALSE(run("key missing/new"));
  // The shell's limit, in blocks, lets no byte be written.
  EXPECT_FALSE(run("key new", "ulimit -f 0 && trap '' XFSZ && "));
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "new"));
}

TEST_F(MakeUpdateTest, OtherArgumentsPrintTheUsage) {
  for (const char* arguments :
       {"", "key", "release", "release --version 2.0", "other x", "release --unknown"}) {
    EXPECT_FALSE(run(arguments)) << arguments;
    EXPECT_THAT(readFile(folder_.path() / "output"), testing::HasSubstr("navora-make-update key"));
  }
}

}  // namespace
}  // namespace navora
