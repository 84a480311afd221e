#include "hosts/linux/keyboard/LinuxHotKeys.h"

#include <utility>

#include <gtk/gtk.h>

#include "hosts/linux/keyboard/KeyEvents.h"
#include "locale/DesktopLocale.h"

namespace navora {
namespace {

// Filters the events of the process before GTK dispatches them.
class KeyDownMonitor final : public ObserverToken {
 public:
  explicit KeyDownMonitor(std::function<bool(const KeyEvent&)> monitor)
      : monitor_(std::move(monitor)) {
    gdk_event_handler_set(onEvent, this, nullptr);
  }
  ~KeyDownMonitor() override {
    gdk_event_handler_set([](GdkEvent* event, gpointer) { gtk_main_do_event(event); }, nullptr,
                          nullptr);
  }
  KeyDownMonitor(const KeyDownMonitor&) = delete;
  KeyDownMonitor& operator=(const KeyDownMonitor&) = delete;

 private:
  static void onEvent(GdkEvent* event, gpointer self) {
    const auto& monitor = static_cast<KeyDownMonitor*>(self)->monitor_;
    if (event->type == GDK_KEY_PRESS && monitor(shortcutEventFrom(event->key))) return;
    gtk_main_do_event(event);
  }

  const std::function<bool(const KeyEvent&)> monitor_;
};

}  // namespace

LinuxHotKeys::LinuxHotKeys() = default;

LinuxHotKeys::~LinuxHotKeys() = default;

HotKeys::Status LinuxHotKeys::installEventHandler(std::function<void()> onPressed) {
  if (!KeyGrab::isSupported() && !GlobalShortcutsPortal::isAvailable()) return unsupported;
  onPressed_ = std::move(onPressed);
  return 0;
}

void LinuxHotKeys::removeEventHandler() {
  unregisterHotKey();
  onPressed_ = nullptr;
}

HotKeys::Status LinuxHotKeys::registerHotKey(const HotKey& hotKey) {
  // Releases the old combination first: the new one may be the same.
  unregisterHotKey();
  if (!KeyGrab::isSupported()) {
    portal_ = std::make_unique<GlobalShortcutsPortal>(hotKey, L("Новая запись"), onPressed_);
    return 0;
  }
  grab_ = std::make_unique<KeyGrab>(hotKey, onPressed_);
  const Status status = grab_->status();
  if (status != 0) grab_.reset();
  return status;
}

void LinuxHotKeys::unregisterHotKey() {
  grab_.reset();
  portal_.reset();
}

std::unique_ptr<ObserverToken> LinuxHotKeys::addLocalKeyDownMonitor(
    std::function<bool(const KeyEvent&)> monitor) {
  return std::make_unique<KeyDownMonitor>(std::move(monitor));
}

}  // namespace navora
