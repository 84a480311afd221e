#include "hosts/linux/window/ExposeObserver.h"

#include <utility>

#include <gdk/gdkx.h>

namespace navora {

ExposeObserver::ExposeObserver(Gtk::Window& window, std::function<void()> onExpose)
    : window_(window), onExpose_(std::move(onExpose)) {
  connections_ = {window_.signal_realize().connect([this] { watch(); }),
                  window_.signal_unrealize().connect([this] { release(); }, false)};
  if (window_.get_realized()) watch();
}

ExposeObserver::~ExposeObserver() {
  for (auto& connection : connections_)
    connection.disconnect();
  release();
}

void ExposeObserver::watch() {
  GdkWindow* native = window_.get_window()->gobj();
  if (!GDK_IS_X11_WINDOW(native)) return;
  watched_ = native;
  gdk_window_add_filter(watched_, onEvent, this);
}

void ExposeObserver::release() {
  if (GdkWindow* native = std::exchange(watched_, nullptr))
    gdk_window_remove_filter(native, onEvent, this);
}

GdkFilterReturn ExposeObserver::onEvent(GdkXEvent* event, GdkEvent*, gpointer self) {
  const auto& exposure = static_cast<XEvent*>(event)->xexpose;
  // A count of 0 marks the last event of a series.
  if (exposure.type == Expose && exposure.count == 0)
    static_cast<ExposeObserver*>(self)->onExpose_();
  return GDK_FILTER_CONTINUE;
}

}  // namespace navora
