#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "frameworks/Foundation/MainLoop.h"
#include "runtime/Runtime.h"

namespace {

using Clock = std::chrono::steady_clock;

// The thread that runs the static initialisers is the main one.
const std::thread::id mainThread = std::this_thread::get_id();

// The main queue's blocks. Any thread may add one; only the main thread takes them.
class MainQueueBlocks {
 public:
  static MainQueueBlocks& shared() {
    static auto& blocks = *[] {
      navora::objc::whenTestEnds([] { MainQueueBlocks::shared().discard(); });
      return new MainQueueBlocks;
    }();
    return blocks;
  }

  void add(Clock::time_point time, dispatch_block_t block) {
    const std::lock_guard lock(mutex_);
    // Blocks of equal time stay in order.
    blocks_.emplace(time, [block copy]);
    added_.notify_one();
  }
  // What is added without a delay comes before every timer, in order.
  void add(dispatch_block_t block) { add(Clock::time_point(), block); }

  bool runNext() {
    if (isRunning_) return false;
    isRunning_ = true;
    bool hasRun = false;
    // The block is released at the end of the pool, and its captures may do anything then.
    @autoreleasepool {
      dispatch_block_t block = takeDue();
      hasRun = block != nil;
      if (hasRun) block();
    }
    isRunning_ = false;
    return hasRun;
  }

  void wait(std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex_);
    const auto until = Clock::now() + longest;
    const auto next = blocks_.empty() ? until : std::min(until, blocks_.begin()->first);
    if (next > Clock::now()) added_.wait_until(lock, next);
  }

 private:
  dispatch_block_t takeDue() {
    const std::lock_guard lock(mutex_);
    if (blocks_.empty() || blocks_.begin()->first > Clock::now()) return nil;
    return blocks_.extract(blocks_.begin()).mapped();
  }

  // The captures of a block may add others.
  void discard() {
    for (;;) {
      std::multimap<Clock::time_point, dispatch_block_t> blocks;
      {
        const std::lock_guard lock(mutex_);
        blocks.swap(blocks_);
      }
      if (blocks.empty()) return;
    }
  }

  std::mutex mutex_;
  std::condition_variable added_;
  std::multimap<Clock::time_point, dispatch_block_t> blocks_;
  bool isRunning_ = false;
};

// The blocks of a serial queue and the thread that runs them.
class SerialThread {
 public:
  void add(dispatch_block_t block) {
    const std::lock_guard lock(mutex_);
    blocks_.push_back([block copy]);
    added_.notify_one();
  }

  void end() {
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
    added_.notify_one();
  }

  void run() {
    while (runNext()) {
    }
  }

 private:
  // Returns false at the end. A block that is returned may be autoreleased, so it is taken inside
  // the pool: the queue must not live on because of it.
  bool runNext() {
    {
      std::unique_lock lock(mutex_);
      added_.wait(lock, [this] { return !blocks_.empty() || hasEnded_; });
      if (blocks_.empty()) return false;
    }
    @autoreleasepool {
      take()();
    }
    return true;
  }

  dispatch_block_t take() {
    const std::lock_guard lock(mutex_);
    dispatch_block_t block = blocks_.front();
    blocks_.pop_front();
    return block;
  }

  std::mutex mutex_;
  std::condition_variable added_;
  std::deque<dispatch_block_t> blocks_;
  bool hasEnded_ = false;
};

}  // namespace

@protocol OS_dispatch_queue
- (void)addBlock:(nonnull dispatch_block_t)block;
@end

@protocol OS_dispatch_queue_attr
@end

@interface NavoraMainDispatchQueue : NSObject <OS_dispatch_queue>
@end

@implementation NavoraMainDispatchQueue

- (void)addBlock:(nonnull dispatch_block_t)block {
  MainQueueBlocks::shared().add(block);
}

@end

@interface NavoraQueueAttributes : NSObject <OS_dispatch_queue_attr>
@end

@implementation NavoraQueueAttributes
@end

@interface NavoraSerialDispatchQueue : NSObject <OS_dispatch_queue>
@end

@implementation NavoraSerialDispatchQueue {
  std::shared_ptr<SerialThread> _state;
  std::thread _thread;
}

- (instancetype)init {
  self = [super init];
  if (self != nil) {
    _state = std::make_shared<SerialThread>();
    _thread = std::thread([state = _state] { state->run(); });
  }
  return self;
}

// A queue is retained until its blocks have ended (documentation of dispatch_release), so the
// thread is idle unless this is the end of the last block.
- (void)dealloc {
  _state->end();
  if (_thread.get_id() == std::this_thread::get_id()) {
    _thread.detach();
  } else {
    _thread.join();
  }
}

- (void)addBlock:(nonnull dispatch_block_t)block {
  _state->add(^{
    block();
    (void)self;
  });
}

@end

namespace navora::doubles {

bool MainLoop::turn() {
  if (!isMainThread()) objc::fail("the main loop runs on the main thread only");
  return MainQueueBlocks::shared().runNext();
}

void MainLoop::waitForWork(std::chrono::milliseconds longest) {
  MainQueueBlocks::shared().wait(longest);
}

bool MainLoop::isMainThread() {
  return std::this_thread::get_id() == mainThread;
}

}  // namespace navora::doubles

dispatch_queue_t _Nonnull dispatch_get_main_queue(void) {
  static NavoraMainDispatchQueue* const queue =
      navora::objc::forever([[NavoraMainDispatchQueue alloc] init]);
  return queue;
}

dispatch_queue_attr_t _Nonnull dispatch_queue_attr_make_with_qos_class(
    dispatch_queue_attr_t _Nullable attributes, dispatch_qos_class_t, int) {
  return attributes != nil ? attributes : [[NavoraQueueAttributes alloc] init];
}

dispatch_queue_t _Nonnull dispatch_queue_create(const char* _Nullable,
                                                dispatch_queue_attr_t _Nullable) {
  return [[NavoraSerialDispatchQueue alloc] init];
}

// Nanoseconds of the monotonic clock.
dispatch_time_t dispatch_time(dispatch_time_t when, long long delta) {
  const auto now = static_cast<dispatch_time_t>(Clock::now().time_since_epoch().count());
  return (when == DISPATCH_TIME_NOW ? now : when) + static_cast<dispatch_time_t>(delta);
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t _Nonnull queue,
                    dispatch_block_t _Nonnull block) {
  if (queue != dispatch_get_main_queue()) navora::objc::fail("only the main queue has timers");
  MainQueueBlocks::shared().add(Clock::time_point(Clock::duration(static_cast<Clock::rep>(when))),
                                block);
}

void dispatch_async(dispatch_queue_t _Nonnull queue, dispatch_block_t _Nonnull block) {
  [queue addBlock:block];
}

void dispatch_sync(dispatch_queue_t _Nonnull queue, dispatch_block_t _Nonnull block) {
  // Documentation of dispatch_sync: calling it on the current queue results in deadlock. A wait for
  // the main queue would be one here, because the main thread turns the loop by hand.
  if (queue == dispatch_get_main_queue()) navora::objc::fail("dispatch_sync to the main queue");
  auto* done = new std::atomic<bool>(false);
  [queue addBlock:^{
    block();
    *done = true;
    done->notify_one();
  }];
  done->wait(false);
  delete done;
}
