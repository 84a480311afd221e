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

// Stands for a desktop's bar of status items: takes registrations, and looks at the items and their
// menus and uses them as a bar does. Questions to an item block until it answers, so it must run in
// another process, or its main loop on another thread than the question.
class FakeStatusNotifierWatcher {
 public:
  // A registered object.
  struct Item {
    std::string owner;
    std::string path;
    bool operator==(const Item&) const = default;
  };
  // Rows from the top; four bytes each for alpha, red, green and blue.
  struct Pixmap {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint8_t> bytes;
  };
  struct MenuEntry {
    std::int32_t id = 0;
    // Raw: an underscore stands before the access key.
    std::string label;
    // "standard" or "separator".
    std::string type;
    bool enabled = true;
    bool visible = true;
    std::vector<MenuEntry> children;
  };

  explicit FakeStatusNotifierWatcher(const std::string& sessionBusAddress);
  ~FakeStatusNotifierWatcher();
  FakeStatusNotifierWatcher(const FakeStatusNotifierWatcher&) = delete;
  FakeStatusNotifierWatcher& operator=(const FakeStatusNotifierWatcher&) = delete;

  // What programs have asked for, in order, those that have ended included.
  std::vector<std::string> registrations() const;
  // The items whose programs still run.
  std::vector<Item> items();
  // Waits for the first one.
  Item waitForItem();

  // What follows throws a TestError when the item does not answer properly.

  std::string textProperty(const Item& item, const std::string& name);
  // Of the property that holds pictures; one for each size.
  std::vector<Pixmap> pixmaps(const Item& item, const std::string& name = "IconPixmap");
  // Empty if the item offers none.
  std::string menuPath(const Item& item);
  std::vector<MenuEntry> menu(const Item& item);

  // The user clicks the item itself, at this place of the screen.
  void activate(const Item& item, std::int32_t x = 0, std::int32_t y = 0);
  // The user chooses an entry of the item's menu.
  void choose(const Item& item, std::int32_t entry);
  // The entry by its text, at any depth; throws if there is none that the user could choose.
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
