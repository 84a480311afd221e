#include "hosts/linux/web/LoadTimeout.h"

#include <utility>

namespace navora {

LoadTimeout::LoadTimeout(WebKitWebView* view)
    : progress_(view, "notify::estimated-load-progress", G_CALLBACK(onProgress), this) {}

LoadTimeout::~LoadTimeout() {
  stopTimer();
}

void LoadTimeout::start(std::function<void()> onTimeout) {
  onTimeout_ = std::move(onTimeout);
  restartTimer();
}

void LoadTimeout::stop() {
  onTimeout_ = nullptr;
  stopTimer();
}

void LoadTimeout::restartTimer() {
  stopTimer();
  timer_ = g_timeout_add(static_cast<guint>(seconds_ * 1000), onTimer, this);
}

void LoadTimeout::stopTimer() {
  if (timer_ != 0) g_source_remove(std::exchange(timer_, 0));
}

gboolean LoadTimeout::onTimer(gpointer self) {
  auto& timeout = *static_cast<LoadTimeout*>(self);
  timeout.timer_ = 0;
  if (const auto callback = std::exchange(timeout.onTimeout_, nullptr)) callback();
  return G_SOURCE_REMOVE;
}

void LoadTimeout::onProgress(WebKitWebView*, GParamSpec*, gpointer self) {
  auto& timeout = *static_cast<LoadTimeout*>(self);
  if (timeout.timer_ != 0) timeout.restartTimer();
}

}  // namespace navora
