#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/linux/installation/Ed25519.h"
#include "support/Date.h"
#include "support/Expected.h"
#include "support/Url.h"

namespace navora {

// The archive of a release.
struct UpdateArchive {
  Url url;
  // In bytes, never 0.
  std::uint64_t length = 0;
  Ed25519Signature signature{};
};

// The installed versions for which a release is only announced, not installed.
struct InformationalUpdate {
  bool forAll = false;
  std::vector<std::string> versions;
  std::vector<std::string> belowVersions;
};

// One release for Linux, as the feed describes it.
struct AppcastEntry {
  std::string version;
  std::string displayVersion;
  std::optional<Url> link;
  // std::nullopt for a release that is only announced.
  std::optional<UpdateArchive> archive;
  InformationalUpdate informational;
  // Version of the C library, which limits where the program starts; empty for any.
  std::string minimumSystemVersion;
  // Empty for the default channel.
  std::string channel;
  bool isCritical = false;
  std::optional<Date> published;
  // Delay from one seventh of the users to the next; std::nullopt to offer the release to all at
  // once.
  std::optional<std::chrono::seconds> phasedRolloutInterval;
};

// Parses a feed of releases (RSS 2 with the namespace of the update format). `address` is the
// feed's URL, which relative URLs are resolved against. Skips items for other systems and items
// that are not valid. Returns the reason, for the log, if the text is not a feed or declares a
// document type.
Expected<std::vector<AppcastEntry>, std::string> readAppcast(std::string_view text,
                                                             const Url& address);

}  // namespace navora
