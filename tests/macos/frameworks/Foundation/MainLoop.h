#pragma once

#include <chrono>

#import <Foundation/Foundation.h>

namespace navora::doubles {

// The run loop of the main thread, which the tests turn by hand. It serves the main dispatch queue
// and, through it, the main operation queue. What is left in it when a test ends is discarded.
//
// While a block of the main queue runs, a loop inside it (that of a modal alert) serves no other
// block: the main queue is serial.
class MainLoop {
 public:
  // Runs the block, or those timers, that are due; returns whether there was one.
  static bool turn();
  // Waits for the next block, at most as long as given.
  static void waitForWork(std::chrono::milliseconds longest);

  static bool isMainThread();
};

}  // namespace navora::doubles
