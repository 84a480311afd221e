#include <gmock/gmock.h>

#include "hosts/linux/installation/AppcastSelection.h"

namespace navora {
namespace {

using std::chrono::hours;

AppcastEntry entryOf(const std::string& version) {
  AppcastEntry entry;
  entry.version = version;
  entry.displayVersion = version;
  entry.archive = UpdateArchive{*Url::parse("https://updates.example/a"), 1, {}};
  return entry;
}

class AppcastSelectionTest : public testing::Test {
 protected:
  static std::string chosen(const std::vector<AppcastEntry>& entries,
                            const AppcastSelection::Conditions& conditions) {
    const auto entry = AppcastSelection::choose(entries, conditions);
    return entry ? entry->version : "none";
  }
  std::string chosen(const std::vector<AppcastEntry>& entries) const {
    return chosen(entries, conditions_);
  }

  const Date published_ = dateFromSecondsSince1970(1'000'000'000);
  AppcastSelection::Conditions conditions_{
      .currentVersion = "1.5", .systemVersion = "2.36", .now = published_};
};

TEST_F(AppcastSelectionTest, OffersTheNewestInAnyOrderOfTheFeed) {
  EXPECT_EQ(chosen({entryOf("1.6"), entryOf("1.10"), entryOf("1.9")}), "1.10");
  EXPECT_EQ(chosen({entryOf("1.10"), entryOf("1.9"), entryOf("1.6")}), "1.10");
}

TEST_F(AppcastSelectionTest, NeitherAnOlderNorTheSameVersionIsOffered) {
  EXPECT_EQ(chosen({}), "none");
  EXPECT_EQ(chosen({entryOf("1.4"), entryOf("1.5"), entryOf("1.5.0"), entryOf("1.5rc1"),
                    entryOf("1.5-9")}),
            "none");
}

TEST_F(AppcastSelectionTest, APrereleaseIsFollowedByItsRelease) {
  conditions_.currentVersion = "1.6rc1";
  EXPECT_EQ(chosen({entryOf("1.6"), entryOf("1.5")}), "1.6");
}

TEST_F(AppcastSelectionTest, ReleasesOfAChannelAreNotOffered) {
  auto beta = entryOf("2.0");
  beta.channel = "beta";
  EXPECT_EQ(chosen({beta, entryOf("1.6")}), "1.6");
  conditions_.userInitiated = true;
  EXPECT_EQ(chosen({beta}), "none");
}

TEST_F(AppcastSelectionTest, AReleaseForANewerSystemIsNotOffered) {
  auto entry = entryOf("2.0");
  entry.minimumSystemVersion = "2.37";
  EXPECT_EQ(chosen({entry, entryOf("1.6")}), "1.6");
  entry.minimumSystemVersion = "2.36";
  EXPECT_EQ(chosen({entry, entryOf("1.6")}), "2.0");
  entry.minimumSystemVersion = "2.4";
  EXPECT_EQ(chosen({entry, entryOf("1.6")}), "2.0");
  entry.minimumSystemVersion = "2.100";
  conditions_.userInitiated = true;
  EXPECT_EQ(chosen({entry}), "none");
}

class PhasedSelectionTest : public AppcastSelectionTest {
 protected:
  PhasedSelectionTest() {
    phased_.published = published_;
    phased_.phasedRolloutInterval = hours(24);
  }

  AppcastEntry phased_ = entryOf("2.0");
};

TEST_F(PhasedSelectionTest, EachGroupWaitsForItsTurn) {
  for (int group = 0; group < AppcastSelection::rolloutGroups; ++group) {
    conditions_.rolloutGroup = group;
    conditions_.now = published_ + hours(24 * group);
    EXPECT_EQ(chosen({phased_}), "2.0") << group;
    conditions_.now -= std::chrono::seconds(1);
    EXPECT_EQ(chosen({phased_}), "none") << group;
  }
}

TEST_F(PhasedSelectionTest, AWaitingGroupIsOfferedAnEarlierRelease) {
  conditions_.rolloutGroup = 6;
  EXPECT_EQ(chosen({phased_, entryOf("1.6")}), "1.6");
}

TEST_F(PhasedSelectionTest, ACheckByTheUserDoesNotWait) {
  conditions_.rolloutGroup = 6;
  conditions_.userInitiated = true;
  EXPECT_EQ(chosen({phased_}), "2.0");
}

TEST_F(PhasedSelectionTest, ACriticalReleaseDoesNotWait) {
  conditions_.rolloutGroup = 6;
  phased_.isCritical = true;
  EXPECT_EQ(chosen({phased_}), "2.0");
}

TEST_F(PhasedSelectionTest, WithoutADateOrAnIntervalNoGroupWaits) {
  conditions_.rolloutGroup = 6;
  auto undated = phased_;
  undated.published.reset();
  EXPECT_EQ(chosen({undated}), "2.0");
  phased_.phasedRolloutInterval.reset();
  EXPECT_EQ(chosen({phased_}), "2.0");
}

TEST_F(PhasedSelectionTest, TheLongestIntervalDoesNotOverflow) {
  conditions_.rolloutGroup = 6;
  phased_.phasedRolloutInterval = std::chrono::seconds(4'294'967'295);
  EXPECT_EQ(chosen({phased_}), "none");
}

TEST(InformationalUpdateTest, AppliesToAllSomeOrOlderVersions) {
  auto entry = entryOf("2.0");
  EXPECT_FALSE(AppcastSelection::isInformational(entry, "1.0"));
  entry.informational.versions = {"1.2", "1.4"};
  EXPECT_TRUE(AppcastSelection::isInformational(entry, "1.4.0"));
  EXPECT_FALSE(AppcastSelection::isInformational(entry, "1.3"));
  entry.informational.belowVersions = {"1.1"};
  EXPECT_TRUE(AppcastSelection::isInformational(entry, "1.0.9"));
  EXPECT_FALSE(AppcastSelection::isInformational(entry, "1.1"));
  entry.informational.forAll = true;
  EXPECT_TRUE(AppcastSelection::isInformational(entry, "1.1"));
}

TEST(InformationalUpdateTest, AReleaseWithoutAnArchiveIsInformational) {
  auto entry = entryOf("2.0");
  entry.archive.reset();
  EXPECT_TRUE(AppcastSelection::isInformational(entry, "1.0"));
}

}  // namespace
}  // namespace navora
