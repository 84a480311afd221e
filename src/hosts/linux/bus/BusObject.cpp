#include "hosts/linux/bus/BusObject.h"

#include <iostream>
#include <utility>

#include "support/FatalError.h"

namespace navora {

BusObject::BusObject(GDBusConnection* bus, const char* path, const char* introspection,
                     Implementation implementation)
    : bus_(GObjectPtr<GDBusConnection>::retain(bus)),
      path_(path),
      implementation_(std::move(implementation)),
      node_(g_dbus_node_info_new_for_xml(introspection, nullptr)) {
  if (node_ == nullptr) fatalError("The introspection data is not valid", __FILE__, __LINE__);
  static const GDBusInterfaceVTable table{&BusObject::onCall, &BusObject::onProperty, nullptr, {}};
  GErrorPtr error;
  registration_ = g_dbus_connection_register_object(bus, path, node_->interfaces[0], &table, this,
                                                    nullptr, error.out());
  if (error) std::cerr << "Navora: " << error->message << "\n";
}

BusObject::~BusObject() {
  if (registration_ != 0) g_dbus_connection_unregister_object(bus_.get(), registration_);
  g_dbus_node_info_unref(node_);
}

void BusObject::emit(const char* signal, GVariant* parameters) {
  g_dbus_connection_emit_signal(bus_.get(), nullptr, path_.c_str(), node_->interfaces[0]->name,
                                signal, parameters, nullptr);
}

void BusObject::onCall(GDBusConnection*, const char*, const char*, const char*, const char* method,
                       GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
  // A copy: the call may destroy this object.
  const auto call = static_cast<BusObject*>(self)->implementation_.call;
  call(method, parameters, invocation);
}

GVariant* BusObject::onProperty(GDBusConnection*, const char*, const char*, const char*,
                                const char* property, GError** error, gpointer self) {
  GVariant* value = static_cast<BusObject*>(self)->implementation_.property(property);
  if (value == nullptr)
    g_set_error(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY, "No property %s", property);
  return value;
}

}  // namespace navora
