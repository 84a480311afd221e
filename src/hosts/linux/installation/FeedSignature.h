#pragma once

#include <string_view>

#include "hosts/linux/installation/Ed25519.h"

namespace navora {

// A feed can be signed as a whole by a comment at its very end; what comes before it is what is
// signed.
enum class FeedSignature { missing, valid, invalid };

FeedSignature checkFeedSignature(std::string_view feed, const Ed25519PublicKey& key);

}  // namespace navora
