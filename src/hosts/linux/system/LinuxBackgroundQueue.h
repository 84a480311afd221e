#pragma once

#include <functional>

#include <glib.h>

#include "platform/BackgroundJobs.h"
#include "platform/BackgroundQueue.h"
#include "platform/MainQueue.h"
#include "support/Lifetime.h"

namespace navora {

// Runs work on a thread that it borrows from GLib's shared pool while there is any work.
class LinuxBackgroundQueue final : public BackgroundQueue {
 public:
  // Delivers completions through `mainQueue`, which must outlive this queue.
  explicit LinuxBackgroundQueue(MainQueue& mainQueue) : mainQueue_(mainQueue) {}
  ~LinuxBackgroundQueue() override;
  LinuxBackgroundQueue(const LinuxBackgroundQueue&) = delete;
  LinuxBackgroundQueue& operator=(const LinuxBackgroundQueue&) = delete;

  void run(std::function<void()> work, std::function<void()> completion) override;
  void drain() override;

 private:
  void workOnNext();
  void workOnMainThread();

  MainQueue& mainQueue_;
  BackgroundJobs jobs_;
  GThreadPool* pool_ = nullptr;
  // How much work the main thread has to do because no thread could be made for it.
  int withoutThread_ = 0;
  Lifetime lifetime_;
  const std::function<void()> completeNext_ = lifetime_.guard([this] { jobs_.completeNext(); });
};

}  // namespace navora
