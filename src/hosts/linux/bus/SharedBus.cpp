#include "hosts/linux/bus/SharedBus.h"

#include <memory>
#include <utility>

namespace navora {
namespace {

struct Request {
  GObjectPtr<GCancellable> cancellable;
  std::function<void(GObjectPtr<GDBusConnection>)> callback;
  std::function<void()> unreachable;
};

void onBus(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Request> request(static_cast<Request*>(data));
  auto bus = GObjectPtr<GDBusConnection>::adopt(g_bus_get_finish(result, nullptr));
  if (g_cancellable_is_cancelled(request->cancellable.get()) != FALSE) return;
  if (bus) return request->callback(std::move(bus));
  if (request->unreachable) request->unreachable();
}

}  // namespace

void joinSharedBus(GBusType type, GCancellable* cancellable,
                   std::function<void(GObjectPtr<GDBusConnection>)> callback,
                   std::function<void()> unreachable) {
  g_bus_get(type, nullptr, onBus,
            new Request{GObjectPtr<GCancellable>::retain(cancellable), std::move(callback),
                        std::move(unreachable)});
}

}  // namespace navora
