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

// The file that brings a release.
struct UpdateArchive {
  Url url;
  // In bytes, never 0.
  std::uint64_t length = 0;
  Ed25519Signature signature{};
};

// For which of the versions that are in use a release can only be read about, not installed.
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
  // None for a release that is only announced.
  std::optional<UpdateArchive> archive;
  InformationalUpdate informational;
  // Empty for none. Of the C library: it decides whether a program starts.
  std::string minimumSystemVersion;
  // Empty for the one that everybody follows.
  std::string channel;
  bool isCritical = false;
  std::optional<Date> published;
  // How much later each further seventh of the users gets the release; none for all at once.
  std::optional<std::chrono::seconds> phasedRolloutInterval;
};

// Reads a feed of releases (RSS 2 with the namespace of the update format). Addresses in it may be
// relative to the feed's. Items for other systems, and items that are not wholly understood, are
// left out; what is no feed at all, or declares a document type, gives the reason as text.
Expected<std::vector<AppcastEntry>, std::string> readAppcast(std::string_view text,
                                                             const Url& address);

}  // namespace navora
