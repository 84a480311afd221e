#include "end_to_end/driver/BusService.h"

#include <utility>

#include "tests/support/Wait.h"

namespace navora::driver {
namespace {

void onCall(GDBusConnection*, const char*, const char*, const char*, const char* method,
            GVariant* parameters, GDBusMethodInvocation* invocation, gpointer handler) {
  (*static_cast<const BusService::Handler*>(handler))(method, parameters, invocation);
}

constexpr GDBusInterfaceVTable handlers{onCall, nullptr, nullptr, {}};

GDBusNodeInfo* parse(const std::string& introspection) {
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(introspection.c_str(), nullptr);
  if (node == nullptr || node->interfaces[0] == nullptr)
    throw TestError("The description of a bus interface cannot be read");
  return node;
}

}  // namespace

BusService::BusService(const std::string& address, const std::string& name, const std::string& path,
                       const std::string& introspection, Handler handler)
    : name_(name),
      path_(path),
      handler_(std::move(handler)),
      node_(parse(introspection)),
      interface_(node_->interfaces[0]->name),
      context_(g_main_context_new()),
      loop_(g_main_loop_new(context_, FALSE)) {
  std::promise<void> ready;
  auto started = ready.get_future();
  thread_ = std::thread([&] { run(address, ready); });
  try {
    started.get();
  } catch (...) {
    release();
    throw;
  }
}

BusService::~BusService() {
  // Quit from within the loop, because quitting one that does not run yet has no effect.
  g_main_context_invoke(
      context_,
      [](gpointer loop) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
      },
      loop_);
  release();
}

void BusService::release() {
  thread_.join();
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
  g_dbus_node_info_unref(node_);
}

// `address` and `ready` are valid only until `ready` is fulfilled: the constructor waits for that.
void BusService::run(const std::string& address, std::promise<void>& ready) {
  g_main_context_push_thread_default(context_);
  guint object = 0;
  try {
    bus_ = std::make_unique<BusConnection>(address);
    object = g_dbus_connection_register_object(bus_->get(), path_.c_str(), node_->interfaces[0],
                                               &handlers, const_cast<Handler*>(&handler_), nullptr,
                                               nullptr);
    bus_->ownName(name_);
    ready.set_value();
    g_main_loop_run(loop_);
    bus_->releaseName(name_);
    g_dbus_connection_unregister_object(bus_->get(), object);
    bus_.reset();
  } catch (...) {
    if (object != 0) g_dbus_connection_unregister_object(bus_->get(), object);
    bus_.reset();
    ready.set_exception(std::current_exception());
  }
  g_main_context_pop_thread_default(context_);
}

void BusService::emitSignal(const std::string& signal, GVariant* parameters) {
  bus_->emitSignal(path_, interface_, signal, parameters);
}

}  // namespace navora::driver
