#pragma once

#include <functional>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// Detects a page load that makes no progress. WebKitGTK (2.50) has no load time-out: a server that
// accepts the connection and sends nothing would leave the page loading for ever.
class LoadTimeout {
 public:
  explicit LoadTimeout(WebKitWebView* view);
  ~LoadTimeout();

  LoadTimeout(const LoadTimeout&) = delete;
  LoadTimeout& operator=(const LoadTimeout&) = delete;

  // Sets the time without progress, in seconds, for loads that start later.
  void setSeconds(double seconds) { seconds_ = seconds; }

  // Calls `onTimeout` once, unless stop() or another start() comes first.
  void start(std::function<void()> onTimeout);
  void stop();

 private:
  static gboolean onTimer(gpointer self);
  static void onProgress(WebKitWebView*, GParamSpec*, gpointer self);
  void restartTimer();
  void stopTimer();

  double seconds_ = 60;
  std::function<void()> onTimeout_;
  guint timer_ = 0;
  SignalConnection progress_;
};

}  // namespace navora
