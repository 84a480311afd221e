#pragma once

#include <string_view>

#include "hosts/linux/installation/Ed25519.h"

namespace navora {

// A signed feed ends with a comment that has the signature of all the text before it.
enum class FeedSignature { missing, valid, invalid };

// Verifies the signature of a whole feed.
FeedSignature checkFeedSignature(std::string_view feed, const Ed25519PublicKey& key);

}  // namespace navora
