#include "end_to_end/driver/Keyboard.h"

#include <algorithm>
#include <ranges>

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon.h>

#include "end_to_end/driver/XConnection.h"
#include "tests/support/Wait.h"

namespace navora::driver {

namespace {

constexpr std::string_view usualCharacters =
    "абвгдеёжзийклмнопрстуфхцчшщъыьэюяАБВГДЕЁЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"
    "àáâãäåæçèéêëìíîïñòóôõöøùúûüýÿßœÄÅÉÖØÜÑÇ«»„“”’–—…¡¿€№";

std::vector<std::string> splitKeys(std::string_view keys) {
  std::vector<std::string> names;
  while (!keys.empty()) {
    // A '+' is a separator only if it follows a key.
    const std::size_t end = keys.find('+', 1);
    names.emplace_back(keys.substr(0, end));
    keys = end == std::string_view::npos ? std::string_view() : keys.substr(end + 1);
  }
  return names;
}

std::uint32_t symbolNamed(std::string_view name) {
  static const std::map<std::string_view, const char*> shortNames{{"Control", "Control_L"},
                                                                  {"Shift", "Shift_L"},
                                                                  {"Alt", "Alt_L"},
                                                                  {"Super", "Super_L"},
                                                                  {"+", "plus"}};
  const auto known = shortNames.find(name);
  const std::string full = known == shortNames.end() ? std::string(name) : known->second;
  const xkb_keysym_t symbol = xkb_keysym_from_name(full.c_str(), XKB_KEYSYM_NO_FLAGS);
  if (symbol == XKB_KEY_NoSymbol) throw TestError("There is no key named " + full);
  return symbol;
}

std::vector<std::uint32_t> symbolsOf(std::string_view text) {
  std::vector<std::uint32_t> symbols;
  for (std::size_t index = 0; index < text.size();) {
    const auto lead = static_cast<unsigned char>(text[index]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    std::uint32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t next = 1; next < length && index + next < text.size(); ++next) {
      character = character << 6 | (static_cast<unsigned char>(text[index + next]) & 0x3FU);
    }
    index += length;
    symbols.push_back(character == '\n' ? static_cast<std::uint32_t>(XKB_KEY_Return)
                                        : xkb_utf32_to_keysym(character));
  }
  return symbols;
}

// Returns whether a key has no symbol, or one of the XF86 symbols for multimedia keys.
bool dispensable(std::uint32_t symbol) {
  constexpr std::uint32_t firstMediaKey = 0x10080001;
  constexpr std::uint32_t lastMediaKey = 0x1008FFFF;
  return symbol == 0 || (symbol >= firstMediaKey && symbol <= lastMediaKey);
}

}  // namespace

Keyboard::Keyboard(XConnection& connection) : connection_(connection) {
  readLayout();
  // Every change of the layout makes all clients reload it, so common letters are mapped in
  // advance.
  assignSpareKeys(symbolsOf(usualCharacters));
}

void Keyboard::readLayout() {
  const xcb_setup_t* setup = xcb_get_setup(connection_.get());
  const std::uint8_t first = setup->min_keycode;
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - first + 1);
  const XReply<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
      connection_.get(), xcb_get_keyboard_mapping(connection_.get(), first, count), nullptr));
  if (!reply) throw TestError("The display has no keyboard layout");
  symbolsPerKey_ = reply->keysyms_per_keycode;
  const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
  layout_.assign(static_cast<std::size_t>(first) * symbolsPerKey_, XCB_NO_SYMBOL);
  layout_.insert(layout_.end(), symbols, symbols + count * symbolsPerKey_);
  for (int code = first; code < first + count; ++code) {
    const std::uint32_t* ofKey = symbolsOfKey(code);
    if (std::all_of(ofKey, ofKey + symbolsPerKey_, dispensable)) {
      spareCodes_.push_back(static_cast<std::uint8_t>(code));
      continue;
    }
    for (std::uint8_t level = 0; level < 2 && level < symbolsPerKey_; ++level) {
      if (ofKey[level] != XCB_NO_SYMBOL) {
        keys_.try_emplace(ofKey[level], Key{static_cast<std::uint8_t>(code), level});
      }
    }
  }
}

std::uint32_t* Keyboard::symbolsOfKey(int code) {
  return layout_.data() + code * symbolsPerKey_;
}

// Maps all symbols of a text before its first key is pressed, and keeps them: clients read the
// layout when they handle a key, which may be after a later change.
void Keyboard::assignSpareKeys(const std::vector<std::uint32_t>& symbols) {
  int first = 256;
  int last = -1;
  for (std::uint32_t symbol : symbols) {
    if (keys_.contains(symbol)) continue;
    const bool shifted = halfUsedCode_.has_value();
    if (!shifted && spareCodes_.empty()) {
      throw TestError("The keyboard has no spare key for a character");
    }
    const std::uint8_t code = shifted ? *halfUsedCode_ : spareCodes_.back();
    if (shifted) {
      symbolsOfKey(code)[1] = symbol;
      halfUsedCode_.reset();
    } else {
      spareCodes_.pop_back();
      std::fill_n(symbolsOfKey(code), symbolsPerKey_, XCB_NO_SYMBOL);
      std::fill_n(symbolsOfKey(code), 2, symbol);
      halfUsedCode_ = code;
    }
    keys_[symbol] = {code, static_cast<std::uint8_t>(shifted ? 1 : 0)};
    first = std::min<int>(first, code);
    last = std::max<int>(last, code);
  }
  if (last < 0) return;
  xcb_change_keyboard_mapping(connection_.get(), static_cast<std::uint8_t>(last - first + 1),
                              static_cast<std::uint8_t>(first), symbolsPerKey_,
                              symbolsOfKey(first));
  connection_.synchronize();
}

Keyboard::Key Keyboard::key(std::uint32_t symbol) {
  assignSpareKeys({symbol});
  return keys_.at(symbol);
}

void Keyboard::event(std::uint8_t type, std::uint8_t code) {
  xcb_test_fake_input(connection_.get(), type, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void Keyboard::strike(std::uint32_t symbol) {
  const Key struck = key(symbol);
  const std::uint8_t shift = key(XKB_KEY_Shift_L).code;
  if (struck.level == 1) event(XCB_KEY_PRESS, shift);
  event(XCB_KEY_PRESS, struck.code);
  event(XCB_KEY_RELEASE, struck.code);
  if (struck.level == 1) event(XCB_KEY_RELEASE, shift);
}

void Keyboard::type(std::string_view text) {
  const std::vector<std::uint32_t> symbols = symbolsOf(text);
  assignSpareKeys(symbols);
  for (std::uint32_t symbol : symbols)
    strike(symbol);
  connection_.synchronize();
}

void Keyboard::chord(std::string_view keys) {
  const std::vector<std::string> names = splitKeys(keys);
  std::vector<std::uint8_t> codes;
  for (const std::string& name : names) {
    const Key held = key(symbolNamed(name));
    if (held.level == 1) codes.push_back(key(XKB_KEY_Shift_L).code);
    codes.push_back(held.code);
  }
  // Sent at once, so that no key is held long enough to repeat.
  for (std::uint8_t code : codes)
    event(XCB_KEY_PRESS, code);
  for (std::uint8_t code : std::views::reverse(codes))
    event(XCB_KEY_RELEASE, code);
  connection_.synchronize();
}

void Keyboard::press(std::string_view name) {
  event(XCB_KEY_PRESS, key(symbolNamed(name)).code);
  connection_.synchronize();
}

void Keyboard::release(std::string_view name) {
  event(XCB_KEY_RELEASE, key(symbolNamed(name)).code);
  connection_.synchronize();
}

Keyboard::Hold::Hold(Keyboard& keyboard, std::string_view keys)
    : keyboard_(keyboard), keys_(splitKeys(keys)) {
  for (const std::string& name : keys_)
    keyboard_.press(name);
}

Keyboard::Hold::~Hold() {
  for (const std::string& name : std::views::reverse(keys_)) {
    try {
      keyboard_.release(name);
    } catch (const TestError&) {
      // The display has exited.
    }
  }
}

}  // namespace navora::driver
