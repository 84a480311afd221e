#pragma once

#include <functional>
#include <string>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// Exports an object on a message bus until destroyed. GDBus rejects calls whose arguments do not
// match the introspection data.
class BusObject {
 public:
  struct Implementation {
    // Must complete `invocation`, at once or later. May destroy the BusObject.
    std::function<void(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation)>
        call;
    // Returns the property's value, floating or with a reference for the caller; null if there is
    // no such property.
    std::function<GVariant*(const char* property)> property;
  };

  // `introspection` is the XML of a node with one interface. If the path is taken, the error is
  // written to standard error and nothing is exported.
  BusObject(GDBusConnection* bus, const char* path, const char* introspection,
            Implementation implementation);
  ~BusObject();
  BusObject(const BusObject&) = delete;
  BusObject& operator=(const BusObject&) = delete;

  // Emits a signal of the interface; a floating `parameters` is consumed.
  void emit(const char* signal, GVariant* parameters);

 private:
  static void onCall(GDBusConnection*, const char* sender, const char* path, const char* interface,
                     const char* method, GVariant* parameters, GDBusMethodInvocation* invocation,
                     gpointer self);
  static GVariant* onProperty(GDBusConnection*, const char* sender, const char* path,
                              const char* interface, const char* property, GError** error,
                              gpointer self);

  GObjectPtr<GDBusConnection> bus_;
  const std::string path_;
  const Implementation implementation_;
  GDBusNodeInfo* node_;
  guint registration_ = 0;
};

}  // namespace navora
