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

// A keyboard at the display: its events go through the server like those of a real one, so grabs,
// the window manager and input methods see them.
class Keyboard {
 public:
  explicit Keyboard(XConnection& connection);

  // Keys joined by '+', the last one struck while the others are held: "Control+Shift+space",
  // "Return", "Alt+F4". Names are keysym names; Control, Shift, Alt and Super mean the left key.
  void chord(std::string_view keys);
  // UTF-8 text, key by key; a line break is Return and a tab is Tab. Characters that the layout
  // does not have get a key of their own.
  void type(std::string_view text);
  void press(std::string_view key);
  void release(std::string_view key);

  // Holds keys (joined by '+', empty for none) down for a scope.
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
  std::vector<std::uint8_t> spareCodes_;      // keys that nobody misses, taken from the back
  std::optional<std::uint8_t> halfUsedCode_;  // the last one taken, while its shifted half is free
  std::vector<std::uint32_t> layout_;         // keysyms of every key code, beginning with code 0
  std::uint8_t symbolsPerKey_ = 0;
};

}  // namespace navora::driver
