#include <algorithm>
#include <list>

#include "frameworks/Carbon/CarbonState.h"
#include "runtime/Runtime.h"

struct OpaqueEventHandlerRef {
  EventHandlerUPP handler;
  void* userData;
};
struct OpaqueEventHotKeyRef {
  navora::doubles::RegisteredHotKey hotKey;
};
struct OpaqueEventTargetRef {};
struct OpaqueEventHandlerCallRef {};
struct OpaqueEventRef {};

namespace {

struct CarbonState {
  static CarbonState& shared() {
    static auto& state = *[] {
      navora::objc::whenTestEnds([] { CarbonState::shared().reset(); });
      return new CarbonState;
    }();
    return state;
  }

  void reset() {
    if (!handlers.empty()) navora::objc::complain("An event handler was not removed");
    if (!hotKeys.empty()) navora::objc::complain("A hot key was not unregistered");
    handlers.clear();
    hotKeys.clear();
    failure = noErr;
  }

  std::list<OpaqueEventHandlerRef> handlers;
  std::list<OpaqueEventHotKeyRef> hotKeys;
  OSStatus failure = noErr;
};

template <typename Element>
void removeReference(std::list<Element>& list, const Element* reference, const char* what) {
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const Element& element) { return &element == reference; });
  if (found == list.end()) navora::objc::fail(std::string(what) + " twice");
  list.erase(found);
}

}  // namespace

namespace navora::doubles {

std::vector<RegisteredHotKey> registeredHotKeys() {
  std::vector<RegisteredHotKey> hotKeys;
  for (const OpaqueEventHotKeyRef& reference : CarbonState::shared().hotKeys) {
    hotKeys.push_back(reference.hotKey);
  }
  return hotKeys;
}

// The most recently installed handler is called first, and the event ends with one that returns
// noErr: Carbon Event Manager Programming Guide, "Event Handler Stack".
bool pressHotKey(UInt32 keyCode, UInt32 modifiers) {
  CarbonState& state = CarbonState::shared();
  const bool isRegistered =
      std::any_of(state.hotKeys.begin(), state.hotKeys.end(), [&](const auto& reference) {
        return reference.hotKey.keyCode == keyCode && reference.hotKey.modifiers == modifiers;
      });
  if (!isRegistered || state.handlers.empty()) return false;
  OpaqueEventHandlerCallRef call;
  OpaqueEventRef event;
  const OpaqueEventHandlerRef& handler = state.handlers.back();
  return handler.handler(&call, &event, handler.userData) == noErr;
}

void failNextHotKeyCalls(OSStatus status) {
  CarbonState::shared().failure = status;
}

}  // namespace navora::doubles

EventTargetRef GetApplicationEventTarget(void) {
  static OpaqueEventTargetRef target;
  return &target;
}

OSStatus InstallEventHandler(EventTargetRef, EventHandlerUPP handler, ItemCount count,
                             const EventTypeSpec* types, void* userData,
                             EventHandlerRef* reference) {
  CarbonState& state = CarbonState::shared();
  if (state.failure != noErr) return state.failure;
  if (count != 1 || types->eventClass != kEventClassKeyboard ||
      types->eventKind != kEventHotKeyPressed) {
    navora::objc::fail("an event that no double knows");
  }
  state.handlers.push_back({handler, userData});
  *reference = &state.handlers.back();
  return noErr;
}

OSStatus RemoveEventHandler(EventHandlerRef reference) {
  removeReference(CarbonState::shared().handlers, reference, "an event handler was removed");
  return noErr;
}

OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID identifier,
                             EventTargetRef, OptionBits, EventHotKeyRef* reference) {
  CarbonState& state = CarbonState::shared();
  if (state.failure != noErr) return state.failure;
  for (const OpaqueEventHotKeyRef& other : state.hotKeys) {
    if (other.hotKey.keyCode == keyCode && other.hotKey.modifiers == modifiers) {
      return navora::doubles::eventHotKeyExistsErr;
    }
  }
  state.hotKeys.push_back({{keyCode, modifiers, identifier}});
  *reference = &state.hotKeys.back();
  return noErr;
}

OSStatus UnregisterEventHotKey(EventHotKeyRef reference) {
  removeReference(CarbonState::shared().hotKeys, reference, "a hot key was unregistered");
  return noErr;
}
