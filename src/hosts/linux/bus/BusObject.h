#pragma once

#include <functional>
#include <string>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// One object of ours on a message bus, there as long as this one. Calls with arguments of other
// types than the introspection data says are refused before they come here.
class BusObject {
 public:
  struct Implementation {
    // Answers the invocation, which may end the object.
    std::function<void(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation)>
        call;
    // The value, floating or with a reference of its own; null for none.
    std::function<GVariant*(const char* property)> property;
  };

  // `introspection` describes a node with one interface. Another object at the same path is
  // reported on standard error, and this one is then not there.
  BusObject(GDBusConnection* bus, const char* path, const char* introspection,
            Implementation implementation);
  ~BusObject();
  BusObject(const BusObject&) = delete;
  BusObject& operator=(const BusObject&) = delete;

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
