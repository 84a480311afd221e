#include "hosts/linux/bus/BusCall.h"

#include <limits>
#include <memory>
#include <utility>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {
namespace {

void onReply(GObject* bus, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<BusReply> reply(static_cast<BusReply*>(data));
  GErrorPtr error;
  const GVariantPtr value(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, error.out()));
  (*reply)(value.get(), error.get());
}

}  // namespace

void callBus(GDBusConnection* bus, const BusMethod& method, GVariant* parameters,
             const char* replyType, std::chrono::milliseconds timeout, BusReply reply) {
  const int milliseconds =
      timeout == noTimeout ? std::numeric_limits<int>::max() : static_cast<int>(timeout.count());
  g_dbus_connection_call(bus, method.destination, method.path, method.interface, method.name,
                         parameters, G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE,
                         milliseconds, nullptr, onReply, new BusReply(std::move(reply)));
}

}  // namespace navora
