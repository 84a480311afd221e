#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "end_to_end/driver/BusConnection.h"
#include "end_to_end/driver/Geometry.h"

namespace navora::driver {

// The bits of a widget's state that tests ask for, numbered as the accessibility protocol does.
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

// One native widget as assistive technology sees it. The widget can vanish at any moment: questions
// then answer "nothing" (empty text, no children), and commands throw a TestError.
class AccessibleObject {
 public:
  AccessibleObject(std::shared_ptr<BusConnection> bus, std::string owner, std::string path);

  // Role names are those of the protocol: "frame", "dialog", "alert", "push button", "label",
  // "text", "menu item", "check box"...
  std::string role() const;
  std::string name() const;
  std::string description() const;
  // The text of a label, entry or text view, without limits.
  std::string text() const;
  bool has(AccessibleState state) const;
  // Fraction or number of a progress bar, slider or spin button; 0 when it has none.
  double value() const;
  Rectangle extents() const;
  std::vector<AccessibleObject> children() const;

  // The widget's first action, as a screen reader would trigger it.
  void press() const;
  void focus() const;
  void setText(std::string_view text) const;

  // The program that owns the widget: the page of a web view belongs to another one than its
  // window.
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
