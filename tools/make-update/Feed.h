#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace navora {

// A release as it stands in a feed. Texts that are empty are left out.
struct FeedItem {
  std::string version;
  std::string link;
  std::string published;
  std::string minimumSystemVersion;
  std::string channel;
  std::optional<std::chrono::seconds> phasedRolloutInterval;
  bool isCritical = false;
  bool isInformational = false;

  std::string archiveUrl;
  std::uint64_t archiveLength = 0;
  std::string archiveSignature;
};

// The feed with the item before the others, in place of one for Linux of the same version. An empty
// text becomes a new feed; none for a text that is not a feed with the usual prefix "sparkle". A
// signature of the feed is taken off, as all comments are.
std::optional<std::string> addToFeed(const std::string& feed, const FeedItem& item);

}  // namespace navora
