#include <cstddef>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "end_to_end/driver/ProcessTable.h"

namespace navora::driver {
namespace {

TEST(ProcessTableTest, CountsWhatAProcessHolds) {
  const auto before = resourceUse(getpid());
  ASSERT_TRUE(before);
  EXPECT_GT(before->privateMemoryKiB, 0);

  const int descriptor = open("/dev/null", O_RDONLY);
  EXPECT_EQ(resourceUse(getpid())->descriptors, before->descriptors + 1);
  close(descriptor);
  EXPECT_EQ(resourceUse(getpid())->descriptors, before->descriptors);

  std::thread([&] { EXPECT_EQ(resourceUse(getpid())->threads, before->threads + 1); }).join();

  constexpr std::size_t mebibyte = 1024 * 1024;
  const std::vector<char> written(16 * mebibyte, 'x');
  EXPECT_GE(resourceUse(getpid())->privateMemoryKiB, before->privateMemoryKiB + 15 * 1024);
  EXPECT_EQ(written.back(), 'x');
}

TEST(ProcessTableTest, HasNothingToSayOfAProcessThatHasExited) {
  EXPECT_FALSE(resourceUse(1 << 30));
}

}  // namespace
}  // namespace navora::driver
