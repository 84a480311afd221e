#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace navora::driver {

class XConnection;

// A keyboard of the display. Its events pass through the X server (XTEST), so that grabs, the
// window manager and input methods see them.
class Keyboard {
 public:
  explicit Keyboard(XConnection& connection);

  // Presses the last of the keys joined by '+' while holding the others: "Control+Shift+space",
  // "Return", "Alt+F4". Names are those of keysyms; Control, Shift, Alt and Super are the left
  // keys.
  void chord(std::string_view keys);
  // Types UTF-8 text key by key; a line break is Return and a tab is Tab. Characters that are not
  // in the layout are mapped to spare keys.
  void type(std::string_view text);
  void press(std::string_view key);
  void release(std::string_view key);

  // Holds keys (joined by '+'; may be empty) during a scope.
  class Hold {
   public:
    Hold(Keyboard& keyboard, std::string_view keys);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    Keyboard& keyboard_;
    std::vector<std::string> keys_;
  };

 private:
  struct Key {
    std::uint8_t code = 0;
    std::uint8_t level = 0;  // 0 plain, 1 with Shift
  };

  void readLayout();
  void assignSpareKeys(const std::vector<std::uint32_t>& symbols);
  std::uint32_t* symbolsOfKey(int code);
  Key key(std::uint32_t symbol);
  void event(std::uint8_t type, std::uint8_t code);
  void strike(std::uint32_t symbol);

  XConnection& connection_;
  std::map<std::uint32_t, Key> keys_;         // by keysym
  std::vector<std::uint8_t> spareCodes_;      // unused by tests, taken from the back
  std::optional<std::uint8_t> halfUsedCode_;  // the last one taken, if its shifted level is unused
  std::vector<std::uint32_t> layout_;         // keysyms by key code, from code 0
  std::uint8_t symbolsPerKey_ = 0;
};

}  // namespace navora::driver
