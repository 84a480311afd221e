#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/ObserverToken.h"

namespace navora {

// Runs a program's self-test: whether it starts on this machine and holds together. Destroying it
// ends the program.
class ProgramCheck {
 public:
  static constexpr std::chrono::seconds defaultPatience{30};

  // Called once, later, with whether the program ended in time and well.
  using Completion = std::function<void(bool)>;

  ProgramCheck(const std::filesystem::path& program, Completion completion,
               std::chrono::milliseconds patience = defaultPatience);
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
