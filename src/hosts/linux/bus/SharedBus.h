#pragma once

#include <functional>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// Calls `callback` with the process's shared connection to a message bus, or `unreachable`, if set,
// where there is none; after this function has returned, and neither if `cancellable` is cancelled
// first.
//
// `cancellable` is not passed to g_bus_get(): cancelling there would fail every other pending
// request for the shared connection.
void joinSharedBus(GBusType type, GCancellable* cancellable,
                   std::function<void(GObjectPtr<GDBusConnection>)> callback,
                   std::function<void()> unreachable = {});

}  // namespace navora
