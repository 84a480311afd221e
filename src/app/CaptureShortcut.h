#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/HotKeys.h"
#include "platform/MainQueue.h"
#include "platform/System.h"
#include "support/Lifetime.h"

namespace navora {

// The shortcut Command+Shift+Space: a system-wide hot key for other applications, and a key monitor
// for the application's own windows, where the key must not reach the page.
class CaptureShortcut {
 public:
  // The references must outlive this object. `onPressed` is called on the main thread.
  CaptureShortcut(HotKeys& hotKeys, MainQueue& queue, const System& system,
                  std::function<void()> onPressed);
  ~CaptureShortcut();

  CaptureShortcut(const CaptureShortcut&) = delete;
  CaptureShortcut& operator=(const CaptureShortcut&) = delete;

  // Returns whether another application has registered the combination, so that it works in the
  // application's own windows only.
  bool isTaken() const { return installed_ && !registered_; }

 private:
  void installEventHandler();
  void registerHotKey();
  void debug(const std::string& line) const;

  HotKeys& hotKeys_;
  MainQueue& queue_;
  const System& system_;
  const std::function<void()> onPressed_;
  const bool debugging_;
  bool installed_ = false;
  bool registered_ = false;
  std::unique_ptr<ObserverToken> localMonitor_;
  Lifetime lifetime_;
};

}  // namespace navora
