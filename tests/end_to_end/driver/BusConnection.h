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

// A connection to one message bus, used with blocking calls only: it needs no main loop.
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

  // `parameters` is a tuple, consumed when floating; null for none. `call` throws a TestError for
  // an error reply and for none within `timeout`; `tryCall` answers null.
  Variant call(const Call& call, GVariant* parameters = nullptr,
               std::chrono::milliseconds timeout = std::chrono::seconds(10));
  Variant tryCall(const Call& call, GVariant* parameters = nullptr,
                  std::chrono::milliseconds timeout = std::chrono::seconds(10));
  // The value itself, out of its box; null when the object has no such property.
  Variant tryProperty(const std::string& destination, const std::string& path,
                      const std::string& interface, const std::string& property);

  // Takes a well-known name, which nobody else on the bus may own.
  void ownName(const std::string& name);
  // Afterwards nobody finds the name's owner any more. The end of a connection reaches the bus some
  // time later.
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
