#include "app/CaptureShortcut.h"

#include <cstdint>
#include <iostream>
#include <string>
#include <utility>

namespace navora {
namespace {

constexpr HotKey hotKey{.keyCode = KeyEvent::spaceKey,
                        .carbonModifiers = HotKey::carbonCommand | HotKey::carbonShift,
                        .signature = 0x4E41564F,  // "NAVO"
                        .identifier = 1};

// The modifier bits compared: all device-independent ones except Caps Lock, the numeric pad and Fn,
// which do not change the meaning of a shortcut.
constexpr std::uint32_t comparedModifiers = 0xFF5E0000;

bool isShortcut(const KeyEvent& event) {
  return event.keyCode == KeyEvent::spaceKey &&
         (event.modifiers & comparedModifiers) == (KeyEvent::command | KeyEvent::shift);
}

}  // namespace

CaptureShortcut::CaptureShortcut(HotKeys& hotKeys, MainQueue& queue, const System& system,
                                 std::function<void()> onPressed)
    : hotKeys_(hotKeys),
      queue_(queue),
      system_(system),
      onPressed_(std::move(onPressed)),
      debugging_(system.environmentVariable("NAVORA_DEBUG_HOTKEY") == "1") {
  localMonitor_ = hotKeys_.addLocalKeyDownMonitor([this](const KeyEvent& event) {
    if (!isShortcut(event)) return false;
    onPressed_();
    return true;
  });
  installEventHandler();
  if (installed_) registerHotKey();
}

CaptureShortcut::~CaptureShortcut() {
  if (registered_) hotKeys_.unregisterHotKey();
  if (installed_) hotKeys_.removeEventHandler();
}

void CaptureShortcut::installEventHandler() {
  const auto pressed = lifetime_.guard([this] { onPressed_(); });
  const auto status = hotKeys_.installEventHandler([this, pressed] {
    debug("Carbon event received");
    queue_.async(pressed);
  });
  debug("InstallEventHandler status=" + std::to_string(status));
  installed_ = status == 0;
}

void CaptureShortcut::registerHotKey() {
  const auto status = hotKeys_.registerHotKey(hotKey);
  debug("RegisterEventHotKey status=" + std::to_string(status) + ", keyCode=" +
        std::to_string(hotKey.keyCode) + ", modifiers=" + std::to_string(hotKey.carbonModifiers));
  registered_ = status == 0;
}

void CaptureShortcut::debug(const std::string& line) const {
  if (debugging_) std::cerr << "Navora hotkey: " << line << '\n';
  system_.debug(DebugArea::hotKey, line);
}

}  // namespace navora
