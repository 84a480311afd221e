#pragma once

#include <functional>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// Ends a page load that has received nothing for too long: WebKitGTK has no time-out of its own,
// so a server that accepts the connection and stays silent would leave the user waiting for ever.
class LoadTimeout {
 public:
  explicit LoadTimeout(WebKitWebView* view);
  ~LoadTimeout();

  LoadTimeout(const LoadTimeout&) = delete;
  LoadTimeout& operator=(const LoadTimeout&) = delete;

  // For the loads from now on.
  void setSeconds(double seconds) { seconds_ = seconds; }

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
