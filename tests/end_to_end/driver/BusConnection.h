#pragma once

#include <chrono>
#include <memory>
#include <string>

#include <gio/gio.h>

namespace navora::driver {

struct UnreferenceVariant {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, UnreferenceVariant>;

// A connection to a message bus. All calls block, so no main loop is needed.
class BusConnection {
 public:
  struct Call {
    std::string destination;
    std::string path;
    std::string interface;
    std::string method;
  };

  explicit BusConnection(const std::string& address);
  ~BusConnection();
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  GDBusConnection* get() const { return connection_; }

  // Calls a method. `parameters` is a tuple, consumed if floating, or null. On an error reply, or
  // without a reply within `timeout`, call() throws TestError and tryCall() returns null.
  Variant call(const Call& call, GVariant* parameters = nullptr,
               std::chrono::milliseconds timeout = std::chrono::seconds(10));
  Variant tryCall(const Call& call, GVariant* parameters = nullptr,
                  std::chrono::milliseconds timeout = std::chrono::seconds(10));
  // Returns a property's value, unboxed, or null if the object has no such property.
  Variant tryProperty(const std::string& destination, const std::string& path,
                      const std::string& interface, const std::string& property);

  // Acquires a well-known name; throws TestError if it has an owner.
  void ownName(const std::string& name);
  // Releases a name; it has no owner when this returns. The bus learns later of a connection that
  // is only closed.
  void releaseName(const std::string& name);
  bool nameHasOwner(const std::string& name);
  void emitSignal(const std::string& path, const std::string& interface, const std::string& signal,
                  GVariant* parameters);

 private:
  Variant send(const Call& call, GVariant* parameters, std::chrono::milliseconds timeout,
               std::string* failure);

  GDBusConnection* connection_ = nullptr;
};

}  // namespace navora::driver
