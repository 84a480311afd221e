#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/MainQueue.h"
#include "platform/ObserverToken.h"

namespace navora {

// Runs a program with --self-test, which shows whether it starts on this system and finds its
// resources. Destroying the check kills the program; the completion is not called.
class ProgramCheck {
 public:
  // Called once, after the constructor has returned: true if the program exited with status 0
  // within 30 seconds. May destroy the check.
  using Completion = std::function<void(bool)>;

  // `mainQueue` must outlive the check.
  ProgramCheck(const std::filesystem::path& program, MainQueue& mainQueue, Completion completion);
  ~ProgramCheck();
  ProgramCheck(const ProgramCheck&) = delete;
  ProgramCheck& operator=(const ProgramCheck&) = delete;

 private:
  static void onEnd(GObject* process, GAsyncResult* result, gpointer self);
  void end(bool passed);

  Completion completion_;
  GObjectPtr<GCancellable> cancellable_;
  GObjectPtr<GSubprocess> process_;
  std::unique_ptr<ObserverToken> timer_;
};

}  // namespace navora
