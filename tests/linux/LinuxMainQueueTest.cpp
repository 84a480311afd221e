#include <gtest/gtest.h>

#include "hosts/linux/LinuxMainQueue.h"
#include "linux/MainLoop.h"

namespace navora {
namespace {

using std::chrono::milliseconds;

class LinuxMainQueueTest : public testing::Test {
 protected:
  LinuxMainQueue queue_;
};

TEST_F(LinuxMainQueueTest, RunsWorkLaterAndInOrder) {
  std::string order;
  queue_.async([&] { order += "1"; });
  queue_.async([&] { order += "2"; });
  EXPECT_EQ(order, "");
  EXPECT_TRUE(waitUntil([&] { return order == "12"; }));
}

TEST_F(LinuxMainQueueTest, RunsTimersOnceInTheOrderOfTheirTime) {
  std::string order;
  const auto late = queue_.after(milliseconds(40), [&] { order += "late"; });
  const auto early = queue_.after(milliseconds(1), [&] { order += "early "; });
  EXPECT_TRUE(waitUntil([&] { return order == "early late"; }));
}

TEST_F(LinuxMainQueueTest, RunsNothingWhoseTokenIsGone) {
  bool ran = false;
  bool later = false;
  queue_.after(milliseconds(1), [&] { ran = true; }).reset();
  const auto token = queue_.after(milliseconds(20), [&] { later = true; });
  EXPECT_TRUE(waitUntil([&] { return later; }));
  EXPECT_FALSE(ran);
}

TEST_F(LinuxMainQueueTest, LetsTheWorkReleaseItsOwnToken) {
  std::unique_ptr<ObserverToken> token;
  std::string seen;
  const std::string captured = "what was captured lasts";
  token = queue_.after(milliseconds(1), [&, captured] {
    token.reset();
    seen = captured;
  });
  EXPECT_TRUE(waitUntil([&] { return seen == captured; }));
}

}  // namespace
}  // namespace navora
