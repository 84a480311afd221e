#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#import <Foundation/Foundation.h>

#include "runtime/Runtime.h"

namespace {

// Gives every test an autorelease pool and fails it if an object that was made in it is still there
// when the pool has ended.
class InstanceCheck final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    mark_ = navora::objc::instanceMark();
    pool_ = navora::objc::objc_autoreleasePoolPush();
  }

  void OnTestEnd(const testing::TestInfo&) override {
    // What a shared instance drops may be autoreleased.
    navora::objc::resetSharedInstances();
    navora::objc::objc_autoreleasePoolPop(pool_);
    for (const std::string& problem : navora::objc::takeComplaints()) {
      ADD_FAILURE() << problem;
    }
    for (const std::string& name : remainingInstances()) {
      ADD_FAILURE() << "An object was not released: " << name;
    }
  }

  // Another thread may be about to release the last reference.
  std::vector<std::string> remainingInstances() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    std::vector<std::string> names = navora::objc::instancesSince(mark_);
    while (!names.empty() && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      names = navora::objc::instancesSince(mark_);
    }
    return names;
  }

  std::size_t mark_ = 0;
  void* pool_ = nullptr;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new InstanceCheck);
  return RUN_ALL_TESTS();
}
