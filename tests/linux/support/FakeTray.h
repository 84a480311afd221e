#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "end_to_end/driver/BusConnection.h"
#include "hosts/linux/system/GLibSupport.h"

namespace navora {

// The reply or the error.
struct BusAnswer {
  GVariantPtr value;
  std::string error;
};

// A panel with a tray (StatusNotifierWatcher) that runs in the test's main loop: registers items,
// reads their properties and menus and counts their signals.
class FakeTray {
 public:
  enum class Manner { friendly, refusing };

  struct Entry {
    std::int32_t id = 0;
    std::string label;
    std::string type = "standard";
    bool enabled = true;
  };
  struct Layout {
    std::uint32_t revision = 0;
    std::vector<Entry> entries;
  };

  explicit FakeTray(Manner manner = Manner::friendly);
  ~FakeTray();
  FakeTray(const FakeTray&) = delete;
  FakeTray& operator=(const FakeTray&) = delete;

  // Returns whether an item has registered with this bus name.
  bool has(const std::string& name) const;
  bool isOnBus(const std::string& name) { return bus_.nameHasOwner(name); }
  // Returns how often any item has emitted the signal.
  int heard(const std::string& signal) const;

  BusAnswer ask(const std::string& name, const char* path, const char* interface,
                const char* method, GVariant* parameters);
  // Returns null if there is no such property.
  GVariantPtr property(const std::string& name, const char* path, const char* interface,
                       const char* property);
  Layout layout(const std::string& name, const char* path);

 private:
  static void onCall(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self);
  static void onSignal(GDBusConnection*, const char*, const char*, const char*, const char* signal,
                       GVariant*, gpointer self);

  const Manner manner_;
  driver::BusConnection bus_;
  GDBusNodeInfo* node_;
  guint object_ = 0;
  guint subscription_ = 0;
  std::vector<std::string> names_;
  std::map<std::string, int> signals_;
};

}  // namespace navora
