#include "hosts/linux/capture/CaptureFocusWatch.h"

#include <utility>

#include <glibmm/main.h>

namespace navora {

CaptureFocusWatch::CaptureFocusWatch(Gtk::Window& window, std::function<void()> onLost)
    : window_(window), onLost_(std::move(onLost)), activeWindow_([this] { checkLater(); }) {
  connections_ = {window_.signal_focus_in_event().connect([this](GdkEventFocus*) {
                    hadFocus_ = true;
                    return false;
                  }),
                  window_.signal_focus_out_event().connect([this](GdkEventFocus*) {
                    checkLater();
                    return false;
                  })};
}

CaptureFocusWatch::~CaptureFocusWatch() {
  check_.disconnect();
  for (auto& connection : connections_)
    connection.disconnect();
}

void CaptureFocusWatch::reset() {
  hadFocus_ = false;
  check_.disconnect();
}

// Waits for the events that have arrived, because focus-out and the new active window come in any
// order.
void CaptureFocusWatch::checkLater() {
  if (!hadFocus_ || check_.connected()) return;
  check_ = Glib::signal_idle().connect([this] {
    check();
    return false;
  });
}

void CaptureFocusWatch::check() {
  if (window_.has_toplevel_focus() || !anotherWindowIsActive(window_.get_window()->gobj())) return;
  hadFocus_ = false;
  onLost_();
}

}  // namespace navora
