#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "end_to_end/driver/BusConnection.h"
#include "end_to_end/driver/BusService.h"

namespace navora::driver {

// Implements org.kde.StatusNotifierWatcher: accepts registrations, and reads and operates items and
// their menus as a panel does. Calls to an item block, so its main loop must run in another process
// or on another thread.
class FakeStatusNotifierWatcher {
 public:
  // A registered item.
  struct Item {
    std::string owner;
    std::string path;
    bool operator==(const Item&) const = default;
  };
  // Rows from top to bottom, four bytes per pixel: alpha, red, green, blue.
  struct Pixmap {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint8_t> bytes;
  };
  struct MenuEntry {
    std::int32_t id = 0;
    // As sent: an underscore precedes the access key.
    std::string label;
    // Either "standard" or "separator".
    std::string type;
    bool enabled = true;
    bool visible = true;
    std::vector<MenuEntry> children;
  };

  explicit FakeStatusNotifierWatcher(const std::string& sessionBusAddress);
  ~FakeStatusNotifierWatcher();
  FakeStatusNotifierWatcher(const FakeStatusNotifierWatcher&) = delete;
  FakeStatusNotifierWatcher& operator=(const FakeStatusNotifierWatcher&) = delete;

  // Returns all registrations in order, including those of programs that have exited.
  std::vector<std::string> registrations() const;
  // Returns the items of running programs.
  std::vector<Item> items();
  // Waits for an item and returns the first.
  Item waitForItem();

  // The following functions throw TestError if the item violates the protocol.

  std::string textProperty(const Item& item, const std::string& name);
  // Returns the images of a property, one for each size.
  std::vector<Pixmap> pixmaps(const Item& item, const std::string& name = "IconPixmap");
  // Returns the object path of the menu, or an empty string if the item has none.
  std::string menuPath(const Item& item);
  std::vector<MenuEntry> menu(const Item& item);

  // Clicks the item at these screen coordinates.
  void activate(const Item& item, std::int32_t x = 0, std::int32_t y = 0);
  // Chooses an entry of the item's menu.
  void choose(const Item& item, std::int32_t entry);
  // Chooses the entry with this text, at any depth; throws TestError unless it is visible and
  // enabled.
  void choose(const Item& item, const std::string& label);

 private:
  void answer(const std::string& method, GVariant* parameters, GDBusMethodInvocation* invocation);
  void registerItem(const std::string& service, GDBusMethodInvocation* invocation);
  GVariant* property(const std::string& name) const;
  Variant itemProperty(const Item& item, const std::string& name);

  BusConnection bus_;
  mutable std::mutex mutex_;
  std::vector<std::string> registrations_;
  std::vector<Item> items_;
  std::unique_ptr<BusService> service_;
};

}  // namespace navora::driver
