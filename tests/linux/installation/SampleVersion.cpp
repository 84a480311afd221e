#include "linux/installation/SampleVersion.h"

#include "hosts/linux/installation/Installation.h"
#include "support/FatalError.h"
#include "tests/support/Files.h"

namespace navora {

void makeSampleVersion(const std::filesystem::path& folder, const std::string& version,
                       const std::string& script) {
  constexpr mode_t executable = 0755;
  writeFile(folder / Installation::recordName, Installation::record(version));
  writeFile(folder / "bin" / "navora", "#!/bin/sh\n# " + version + "\n" + script + "\n",
            executable);
  writeFile(folder / "share" / "navora" / "texts.json", "{\"text\": \"of " + version + "\"}");
  std::filesystem::create_symlink("texts.json", folder / "share" / "navora" / "link.json");
}

AppcastEntry sampleEntry(const std::filesystem::path& archive, const std::string& version,
                         const SigningKey& key) {
  const auto url = Url::parse("https://updates.example/navora.tar.zst");
  AppcastEntry entry;
  entry.version = version;
  entry.displayVersion = version;
  entry.archive =
      UpdateArchive{*url, std::filesystem::file_size(archive), signatureOf(key, archive)};
  return entry;
}

Ed25519PublicKey publicKeyOf(const SigningKey& key) {
  const auto read = readPublicKey(key.publicText());
  if (!read) fatalError("A key that was made cannot be read", "SampleVersion", __LINE__);
  return *read;
}

Ed25519Signature signatureOf(const SigningKey& key, const std::filesystem::path& file) {
  const auto text = key.signFile(file);
  const auto read = text ? readSignature(*text) : std::nullopt;
  if (!read) fatalError("A file cannot be signed", "SampleVersion", __LINE__);
  return *read;
}

}  // namespace navora
