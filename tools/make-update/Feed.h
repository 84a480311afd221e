#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace navora {

// A release in a feed. Empty texts are left out.
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

// Adds an item as the first one and removes an older item for Linux of the same version. An empty
// text makes a new feed. Returns std::nullopt if the text is not a feed with the namespace prefix
// "sparkle". Drops comments, and with them the signature of the feed.
std::optional<std::string> addToFeed(const std::string& feed, const FeedItem& item);

}  // namespace navora
