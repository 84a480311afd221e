#include <atomic>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "platform/BackgroundJobs.h"

namespace navora {
namespace {

TEST(BackgroundJobsTest, WorksOnOneAfterTheOtherWhoeverWorks) {
  constexpr int count = 2000;
  BackgroundJobs jobs;
  std::vector<int> order;
  std::atomic<int> running = 0;
  for (int number = 0; number < count; ++number) {
    const auto work = [&, number] {
      EXPECT_EQ(++running, 1);
      order.push_back(number);
      --running;
    };
    jobs.add(work, [] {});
  }
  const auto workOnAll = [&jobs] {
    while (jobs.workOnNext()) {
    }
  };
  std::thread other(workOnAll);
  workOnAll();
  other.join();
  std::vector<int> expected;
  for (int number = 0; number < count; ++number)
    expected.push_back(number);
  EXPECT_EQ(order, expected);
}

}  // namespace
}  // namespace navora
