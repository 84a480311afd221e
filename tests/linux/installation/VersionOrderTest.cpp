#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "hosts/linux/installation/VersionOrder.h"

namespace navora {
namespace {

bool isBefore(std::string_view a, std::string_view b) {
  return compareVersions(a, b) < 0 && compareVersions(b, a) > 0;
}

bool areEqual(std::string_view a, std::string_view b) {
  return compareVersions(a, b) == 0 && compareVersions(b, a) == 0;
}

TEST(VersionOrderTest, NumbersAreComparedNumerically) {
  EXPECT_TRUE(isBefore("1.9", "1.10"));
  EXPECT_TRUE(isBefore("9", "10"));
  EXPECT_TRUE(isBefore("1.2.3", "1.3"));
  EXPECT_TRUE(isBefore("2.36", "2.37.1"));
}

TEST(VersionOrderTest, NumbersMayHaveAnyLength) {
  const std::string long9(10'000, '9');
  const std::string longer1 = "1" + std::string(10'000, '0');
  EXPECT_TRUE(isBefore(long9, longer1));
  EXPECT_TRUE(isBefore("18446744073709551615", "18446744073709551616"));
  EXPECT_TRUE(isBefore("1." + long9, "1." + longer1));
}

TEST(VersionOrderTest, LeadingZerosAreIgnored) {
  EXPECT_TRUE(areEqual("1.02", "1.2"));
  EXPECT_TRUE(areEqual("001", "1"));
  EXPECT_TRUE(isBefore("1.009", "1.10"));
}

TEST(VersionOrderTest, TrailingZerosAreIgnored) {
  EXPECT_TRUE(areEqual("1.0", "1.0.0"));
  EXPECT_TRUE(areEqual("1", "1.0.0.0"));
  EXPECT_TRUE(areEqual("", "0"));
  EXPECT_TRUE(isBefore("1.0", "1.0.0.1"));
}

TEST(VersionOrderTest, LettersMakeAVersionOlder) {
  EXPECT_TRUE(isBefore("1.0rc", "1.0"));
  EXPECT_TRUE(isBefore("1.0rc1", "1.0"));
  EXPECT_TRUE(isBefore("1.0.beta", "1.0.0"));
  EXPECT_TRUE(isBefore("0.9", "1.0rc1"));
}

TEST(VersionOrderTest, LettersAreComparedAsTextAndFollowingNumbersNumerically) {
  EXPECT_TRUE(isBefore("1.0alpha", "1.0beta"));
  EXPECT_TRUE(isBefore("1.0rc9", "1.0rc10"));
  EXPECT_TRUE(isBefore("1.0b", "1.0b1"));
}

TEST(VersionOrderTest, TextAfterAHyphenIsIgnored) {
  EXPECT_TRUE(areEqual("1.0-rc1", "1.0"));
  EXPECT_TRUE(areEqual("1.0-2", "1.0-1"));
  EXPECT_TRUE(isBefore("1.0-9", "1.1-1"));
}

TEST(VersionOrderTest, AnySeparatorIsAccepted) {
  EXPECT_TRUE(areEqual("1_2 (3)", "1.2.3"));
  EXPECT_TRUE(areEqual("1..2", "1.2"));
  EXPECT_TRUE(areEqual("\xC3\xA9\n", ""));
}

// Returns all versions of up to four components out of a few.
std::vector<std::string> generatedVersions() {
  std::vector<std::string> versions{""};
  for (std::size_t begin = 0, round = 0; round < 4; ++round) {
    const std::size_t end = versions.size();
    for (; begin < end; ++begin) {
      for (const char* next : {".0", ".1", ".10", "a", "rc"})
        versions.push_back(versions[begin] + next);
    }
  }
  return versions;
}

TEST(VersionOrderTest, IsAWeakOrdering) {
  auto versions = generatedVersions();
  std::ranges::stable_sort(versions,
                           [](const auto& a, const auto& b) { return compareVersions(a, b) < 0; });
  // In a sorted list no version may be less than one before it, and equivalent versions must
  // compare alike with all others.
  for (std::size_t low = 0; low < versions.size(); ++low) {
    for (std::size_t high = low; high < versions.size(); ++high) {
      const auto forward = compareVersions(versions[low], versions[high]);
      const auto backward = compareVersions(versions[high], versions[low]);
      ASSERT_TRUE(forward <= 0) << versions[low] << " and " << versions[high];
      ASSERT_TRUE((forward == 0) == (backward == 0)) << versions[low] << ' ' << versions[high];
      ASSERT_TRUE((forward < 0) == (backward > 0)) << versions[low] << ' ' << versions[high];
      if (forward == 0 && low + 1 < high) {
        ASSERT_TRUE(compareVersions(versions[low + 1], versions[high]) == 0)
            << versions[low] << ", " << versions[low + 1] << " and " << versions[high];
      }
    }
  }
}

}  // namespace
}  // namespace navora
