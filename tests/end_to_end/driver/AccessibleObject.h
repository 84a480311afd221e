#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "end_to_end/driver/BusConnection.h"
#include "end_to_end/driver/Geometry.h"

namespace navora::driver {

// The bits of a widget's state, numbered as in AT-SPI's StateType.
enum class AccessibleState : std::uint8_t {
  active = 1,
  checked = 4,
  editable = 7,
  enabled = 8,
  focused = 12,
  modal = 16,
  sensitive = 24,
  showing = 25,
  visible = 30,
};

// A native widget as assistive technology sees it. The widget can be destroyed at any time: queries
// then return empty values (an empty text, no children, false), and commands throw TestError.
class AccessibleObject {
 public:
  AccessibleObject(std::shared_ptr<BusConnection> bus, std::string owner, std::string path);

  // Returns the AT-SPI role name: "frame", "dialog", "alert", "push button", "label", "text", "menu
  // item", "check box"...
  std::string role() const;
  std::string name() const;
  std::string description() const;
  // Returns the whole text of a label, entry or text view.
  std::string text() const;
  bool has(AccessibleState state) const;
  // Returns the value of a progress bar, slider or spin button; 0 if the widget has none.
  double value() const;
  Rectangle extents() const;
  std::vector<AccessibleObject> children() const;

  // Performs the widget's first action, as a screen reader does.
  void press() const;
  void focus() const;
  void setText(std::string_view text) const;

  // Returns the unique bus name of the process that owns the widget; the page of a web view belongs
  // to another process than its window.
  const std::string& owner() const { return owner_; }
  bool operator==(const AccessibleObject& other) const {
    return owner_ == other.owner_ && path_ == other.path_;
  }

 private:
  Variant ask(const char* interface, const char* method, GVariant* parameters = nullptr) const;
  Variant property(const char* interface, const char* name) const;
  void command(const char* interface, const char* method, GVariant* parameters) const;

  std::shared_ptr<BusConnection> bus_;
  std::string owner_;
  std::string path_;
};

}  // namespace navora::driver
