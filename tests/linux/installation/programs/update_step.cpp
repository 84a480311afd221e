// navora_update_step INSTALLATION ARCHIVE VERSION KEY SIGNATURE
//
// Runs every step of an update that changes files, in one process that can be interrupted at any
// step.
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

#include <fcntl.h>

#include "hosts/linux/installation/UpdateInstaller.h"
#include "hosts/linux/installation/UpdatePreparation.h"

namespace {

int fail(const std::string& reason) {
  std::cerr << reason << '\n';
  return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int expectedArguments = 6;
  if (argc != expectedArguments) return EXIT_FAILURE;
  auto installation = navora::Installation::at(argv[1]);
  const std::filesystem::path archive = argv[2];
  const auto url = navora::Url::parse("https://updates.example/a");
  const auto key = navora::readPublicKey(argv[4]);
  const auto signature = navora::readSignature(argv[5]);
  if (!installation || !url || !key || !signature) return fail("Wrong arguments");

  auto folder = navora::UpdateFolder::claim(*installation);
  if (!folder) return fail(folder.error().localizedDescription);
  std::error_code error;
  std::filesystem::copy_file(archive, folder->archive(), error);
  if (error) return fail(error.message());

  navora::AppcastEntry entry;
  entry.version = argv[3];
  entry.archive = navora::UpdateArchive{*url, std::filesystem::file_size(archive), *signature};
  const std::atomic<bool> cancelled = false;
  if (const auto failure = navora::prepareUpdate(*folder, entry, *key, [](double) {}, cancelled)) {
    return fail(failure->localizedDescription);
  }
  // At end of file: there is no application to wait for.
  navora::FileDescriptor application(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  navora::UpdateInstaller installer(*std::move(installation), *std::move(folder),
                                    std::move(application));
  return installer.run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
