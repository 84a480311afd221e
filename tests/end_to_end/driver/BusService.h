#pragma once

#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "end_to_end/driver/BusConnection.h"

namespace navora::driver {

// An object on the bus that answers calls on a thread of its own, so that callers may block.
class BusService {
 public:
  // Called on the service's thread. Must answer the invocation or take a reference to it.
  using Handler = std::function<void(const std::string& method, GVariant* parameters,
                                     GDBusMethodInvocation* invocation)>;

  // Exports the interface that `introspection` describes at `path`, and owns the name when this
  // returns. Throws TestError if another program owns it.
  BusService(const std::string& address, const std::string& name, const std::string& path,
             const std::string& introspection, Handler handler);
  // Releases the name before it returns, as the bus does after a program exits.
  ~BusService();
  BusService(const BusService&) = delete;
  BusService& operator=(const BusService&) = delete;

  const std::string& interface() const { return interface_; }
  void emitSignal(const std::string& signal, GVariant* parameters);

 private:
  void release();
  void run(const std::string& address, std::promise<void>& ready);

  const std::string name_;
  const std::string path_;
  const Handler handler_;
  GDBusNodeInfo* node_;
  const std::string interface_;
  GMainContext* context_;
  GMainLoop* loop_;
  std::unique_ptr<BusConnection> bus_;
  std::thread thread_;
};

}  // namespace navora::driver
