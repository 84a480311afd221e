#pragma once

#include <filesystem>
#include <string>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/Ed25519.h"
#include "make-update/SigningKey.h"

namespace navora {

// Makes a small version of the application whose program is a shell script.
void makeSampleVersion(const std::filesystem::path& folder, const std::string& version,
                       const std::string& script = "exit 0");

// Returns the feed's entry for the version in `archive`.
AppcastEntry sampleEntry(const std::filesystem::path& archive, const std::string& version,
                         const SigningKey& key);

Ed25519PublicKey publicKeyOf(const SigningKey& key);
Ed25519Signature signatureOf(const SigningKey& key, const std::filesystem::path& file);

}  // namespace navora
