#include "hosts/linux/bus/LoginManager.h"

#include <utility>

#include <gio/gio.h>

#include "hosts/linux/bus/SharedBus.h"
#include "hosts/linux/system/GLibSupport.h"

namespace navora {
namespace {

class ResumeObserver final : public ObserverToken {
 public:
  explicit ResumeObserver(std::function<void()> callback)
      : callback_(std::move(callback)),
        cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())) {
    joinSharedBus(G_BUS_TYPE_SYSTEM, cancellable_.get(),
                  [this](GObjectPtr<GDBusConnection> bus) { listen(std::move(bus)); });
  }

  ~ResumeObserver() override {
    g_cancellable_cancel(cancellable_.get());
    if (bus_) g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
  }

 private:
  void listen(GObjectPtr<GDBusConnection> bus) {
    bus_ = std::move(bus);
    // GLib would end the process together with the system bus. Waking is then reported no more.
    g_dbus_connection_set_exit_on_close(bus_.get(), FALSE);
    subscription_ = g_dbus_connection_signal_subscribe(
        bus_.get(), "org.freedesktop.login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
        "/org/freedesktop/login1", nullptr, G_DBUS_SIGNAL_FLAGS_NONE, onPrepareForSleep, this,
        nullptr);
  }

  static void onPrepareForSleep(GDBusConnection*, const char*, const char*, const char*,
                                const char*, GVariant* parameters, gpointer self) {
    gboolean goingToSleep = TRUE;
    if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)")) == FALSE) return;
    g_variant_get(parameters, "(b)", &goingToSleep);
    if (goingToSleep != FALSE) return;
    // A copy: the callback may destroy this observer.
    const auto callback = static_cast<ResumeObserver*>(self)->callback_;
    callback();
  }

  std::function<void()> callback_;
  GObjectPtr<GCancellable> cancellable_;
  GObjectPtr<GDBusConnection> bus_;
  guint subscription_ = 0;
};

}  // namespace

std::unique_ptr<ObserverToken> observeResume(std::function<void()> callback) {
  return std::make_unique<ResumeObserver>(std::move(callback));
}

}  // namespace navora
