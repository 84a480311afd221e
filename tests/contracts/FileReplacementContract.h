#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "contracts/MainLoop.h"
#include "platform/FileReplacement.h"
#include "support/Expected.h"

namespace navora {

// The contract of FileReplacement, for the fake and for every host's implementation.
template <typename Disk>
class FileReplacementContractTest : public testing::Test {
 protected:
  std::unique_ptr<FileReplacement> replacing(const std::string& name) {
    auto made = disk_.replace(disk_.path(name));
    if (!made) ADD_FAILURE() << made.error().localizedDescription;
    return made ? *std::move(made) : nullptr;
  }
  // Puts the file in place and returns the failure.
  std::optional<PlatformError> put(FileReplacement& replacement) {
    std::optional<std::optional<PlatformError>> result;
    replacement.putInPlace([&](std::optional<PlatformError> error) { result = std::move(error); });
    EXPECT_FALSE(result) << "before the function returned";
    EXPECT_TRUE(waitUntil([&] {
      disk_.turn();
      return result.has_value();
    }));
    return result.value_or(std::nullopt);
  }

  Disk disk_;
};

TYPED_TEST_SUITE_P(FileReplacementContractTest);

TYPED_TEST_P(FileReplacementContractTest, WritesANewFile) {
  auto replacement = this->replacing("file");
  EXPECT_EQ(this->disk_.read(this->disk_.path("file")), "");
  this->disk_.write(replacement->file(), "new");
  EXPECT_EQ(this->put(*replacement), std::nullopt);
  replacement.reset();
  EXPECT_EQ(this->disk_.read(this->disk_.path("file")), "new");
  EXPECT_THAT(this->disk_.names(), testing::ElementsAre("file"));
}

TYPED_TEST_P(FileReplacementContractTest, KeepsTheOldFileUntilTheNewOneIsPutInPlace) {
  this->disk_.write(this->disk_.path("file"), "old");
  auto replacement = this->replacing("file");
  this->disk_.write(replacement->file(), "new");
  EXPECT_EQ(this->disk_.read(this->disk_.path("file")), "old");
  EXPECT_EQ(this->put(*replacement), std::nullopt);
  replacement.reset();
  EXPECT_EQ(this->disk_.read(this->disk_.path("file")), "new");
  EXPECT_THAT(this->disk_.names(), testing::ElementsAre("file"));
}

TYPED_TEST_P(FileReplacementContractTest, LeavesTheOldFileIfItIsDestroyed) {
  this->disk_.write(this->disk_.path("file"), "old");
  auto replacement = this->replacing("file");
  this->disk_.write(replacement->file(), "new");
  replacement.reset();
  EXPECT_EQ(this->disk_.read(this->disk_.path("file")), "old");
  EXPECT_THAT(this->disk_.names(), testing::ElementsAre("file"));
}

TYPED_TEST_P(FileReplacementContractTest, LeavesNothingIfItIsDestroyedUnused) {
  this->replacing("file").reset();
  EXPECT_THAT(this->disk_.names(), testing::IsEmpty());
}

TYPED_TEST_P(FileReplacementContractTest, EndsPuttingInPlaceWhenItIsDestroyed) {
  this->disk_.write(this->disk_.path("file"), "old");
  auto replacement = this->replacing("file");
  this->disk_.write(replacement->file(), "new");
  bool completed = false;
  replacement->putInPlace([&](const auto&) { completed = true; });
  replacement.reset();
  EXPECT_EQ(this->disk_.read(this->disk_.path("file")), "new");
  EXPECT_THAT(this->disk_.names(), testing::ElementsAre("file"));
  this->disk_.turn();
  runPendingEvents();
  EXPECT_FALSE(completed);
}

TYPED_TEST_P(FileReplacementContractTest, ReplacesNoFileThatAppearedMeanwhile) {
  auto replacement = this->replacing("file");
  this->disk_.write(replacement->file(), "new");
  this->disk_.write(this->disk_.path("file"), "another program's");
  const auto error = this->put(*replacement);
  ASSERT_TRUE(error);
  EXPECT_FALSE(error->localizedDescription.empty());
  replacement.reset();
  EXPECT_EQ(this->disk_.read(this->disk_.path("file")), "another program's");
  EXPECT_THAT(this->disk_.names(), testing::ElementsAre("file"));
}

TYPED_TEST_P(FileReplacementContractTest, FailsIfNothingWasWritten) {
  this->disk_.write(this->disk_.path("file"), "old");
  auto replacement = this->replacing("file");
  const auto error = this->put(*replacement);
  ASSERT_TRUE(error);
  EXPECT_FALSE(error->localizedDescription.empty());
  EXPECT_EQ(this->disk_.read(this->disk_.path("file")), "old");
}

TYPED_TEST_P(FileReplacementContractTest, CanBeDestroyedByItsCompletion) {
  auto replacement = this->replacing("file");
  this->disk_.write(replacement->file(), "new");
  replacement->putInPlace([&](const auto&) { replacement.reset(); });
  EXPECT_TRUE(waitUntil([&] {
    this->disk_.turn();
    return replacement == nullptr;
  }));
  EXPECT_THAT(this->disk_.names(), testing::ElementsAre("file"));
}

TYPED_TEST_P(FileReplacementContractTest, SeveralHaveFilesOfTheirOwn) {
  const auto one = this->replacing("file");
  const auto two = this->replacing("file");
  EXPECT_NE(one->file(), two->file());
}

TYPED_TEST_P(FileReplacementContractTest, IsNotMadeWhereNothingCanBeWritten) {
  const auto made = this->disk_.replace(this->disk_.unwritable());
  ASSERT_FALSE(made);
  EXPECT_FALSE(made.error().localizedDescription.empty());
}

REGISTER_TYPED_TEST_SUITE_P(FileReplacementContractTest, WritesANewFile,
                            KeepsTheOldFileUntilTheNewOneIsPutInPlace,
                            LeavesTheOldFileIfItIsDestroyed, LeavesNothingIfItIsDestroyedUnused,
                            EndsPuttingInPlaceWhenItIsDestroyed,
                            ReplacesNoFileThatAppearedMeanwhile, FailsIfNothingWasWritten,
                            CanBeDestroyedByItsCompletion, SeveralHaveFilesOfTheirOwn,
                            IsNotMadeWhereNothingCanBeWritten);

}  // namespace navora
