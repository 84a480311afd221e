#include "hosts/linux/bus/SharedBus.h"

#include <memory>
#include <utility>

namespace navora {
namespace {

struct Request {
  GObjectPtr<GCancellable> cancellable;
  std::function<void(GObjectPtr<GDBusConnection>)> callback;
};

void onBus(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Request> request(static_cast<Request*>(data));
  auto bus = GObjectPtr<GDBusConnection>::adopt(g_bus_get_finish(result, nullptr));
  if (!bus || g_cancellable_is_cancelled(request->cancellable.get()) != FALSE) return;
  request->callback(std::move(bus));
}

}  // namespace

void joinSharedBus(GBusType type, GCancellable* cancellable,
                   std::function<void(GObjectPtr<GDBusConnection>)> callback) {
  g_bus_get(type, nullptr, onBus,
            new Request{GObjectPtr<GCancellable>::retain(cancellable), std::move(callback)});
}

}  // namespace navora
