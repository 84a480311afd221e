#include "fakes/FakeFileReplacement.h"

#include <cerrno>
#include <utility>

namespace navora {

Expected<std::unique_ptr<FileReplacement>, PlatformError> FakeDisk::replace(
    const std::filesystem::path& destination) {
  log_.record("file.prepare " + destination.string());
  if (refusal) return Unexpected(*refusal);
  auto file = destination.parent_path() / (".unfinished" + std::to_string(++count_));
  return std::unique_ptr<FileReplacement>(
      std::make_unique<FakeFileReplacement>(*this, destination, std::move(file)));
}

void FakeDisk::finishWriting() {
  for (const auto& finish : std::exchange(writing_, {}))
    finish();
}

FakeFileReplacement::FakeFileReplacement(FakeDisk& disk, std::filesystem::path destination,
                                         std::filesystem::path file)
    : disk_(disk),
      destination_(std::move(destination)),
      file_(std::move(file)),
      replaces_(disk.files.contains(destination_)) {}

FakeFileReplacement::~FakeFileReplacement() {
  if (completion_) move();
  if (disk_.files.erase(file_) > 0) disk_.log_.record("file.remove " + destination_.string());
}

void FakeFileReplacement::putInPlace(Completion completion) {
  completion_ = std::move(completion);
  disk_.writing_.push_back(lifetime_.guard([this] {
    const auto error = move();
    const Completion ended = std::exchange(completion_, nullptr);
    ended(error);
  }));
}

std::optional<PlatformError> FakeFileReplacement::move() {
  if (!disk_.files.contains(file_)) return PlatformError{"Disk", ENOENT, "No such file"};
  if (!replaces_ && disk_.files.contains(destination_))
    return PlatformError{"Disk", EEXIST, "The file exists"};
  auto file = disk_.files.extract(file_);
  disk_.files[destination_] = std::move(file.mapped());
  disk_.log_.record("file.place " + destination_.string());
  return std::nullopt;
}

}  // namespace navora
