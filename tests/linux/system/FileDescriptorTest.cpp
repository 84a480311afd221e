#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/FileDescriptor.h"

namespace navora {
namespace {

void waitUntilFull(const FileDescriptor& reading) {
  const int capacity = ::fcntl(reading.get(), F_GETPIPE_SZ);
  for (int held = 0; held < capacity && ::ioctl(reading.get(), FIONREAD, &held) == 0;)
    std::this_thread::yield();
}

std::string readToEnd(const FileDescriptor& reading) {
  std::string received;
  std::array<char, 4096> buffer{};
  for (ssize_t size = 1; size > 0;) {
    size = ::read(reading.get(), buffer.data(), buffer.size());
    if (size > 0) received.append(buffer.data(), static_cast<std::size_t>(size));
  }
  return received;
}

TEST(FileDescriptorTest, WritesTheRestAfterASignal) {
  struct sigaction interrupt{};
  struct sigaction before{};
  interrupt.sa_handler = [](int) {};
  ASSERT_EQ(::sigaction(SIGUSR1, &interrupt, &before), 0);
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  const FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);
  std::string text(1'000'000, 'x');
  text.back() = '.';
  bool written = false;
  std::thread writer([&] {
    written = writing.write(text);
    writing = {};
  });
  // write() then returns with what fits into the pipe.
  waitUntilFull(reading);
  ::pthread_kill(writer.native_handle(), SIGUSR1);
  const std::string received = readToEnd(reading);
  writer.join();
  ::sigaction(SIGUSR1, &before, nullptr);
  EXPECT_TRUE(written);
  EXPECT_TRUE(received == text);
}

TEST(FileDescriptorTest, SetsErrnoWhenItCannotWrite) {
  const FileDescriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
  ASSERT_TRUE(full);
  EXPECT_FALSE(full.write("x"));
  EXPECT_EQ(errno, ENOSPC);
  EXPECT_TRUE(full.write(""));
  EXPECT_FALSE(FileDescriptor().write("x"));
  EXPECT_EQ(errno, EBADF);
}

}  // namespace
}  // namespace navora
