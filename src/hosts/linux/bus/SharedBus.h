#pragma once

#include <functional>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// Gives `callback` the process's connection to a message bus, later; never when there is no such
// bus or when `cancellable` is cancelled before.
//
// Everybody in the process shares the connection, so its making is not cancelled itself: that would
// take it away from all who wait for it.
void joinSharedBus(GBusType type, GCancellable* cancellable,
                   std::function<void(GObjectPtr<GDBusConnection>)> callback);

}  // namespace navora
