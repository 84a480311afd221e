#pragma once

// The hot keys of the Carbon Event Manager, which AppKit does not replace. Apple's archived
// Carbon Event Manager Reference describes them; the header is CarbonEvents.h of HIToolbox.

typedef int OSStatus;
typedef unsigned int OSType;
typedef unsigned int OptionBits;
typedef unsigned int UInt32;
typedef unsigned long ItemCount;

typedef struct OpaqueEventRef* EventRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef struct OpaqueEventHotKeyRef* EventHotKeyRef;

// Universal procedure pointers are plain function pointers on 64-bit machines.
typedef OSStatus (*EventHandlerUPP)(EventHandlerCallRef _Nonnull inHandlerCallRef,
                                    EventRef _Nonnull inEvent, void* _Nullable inUserData);

struct EventTypeSpec {
  OSType eventClass;
  UInt32 eventKind;
};
typedef struct EventTypeSpec EventTypeSpec;

struct EventHotKeyID {
  OSType signature;
  UInt32 id;
};
typedef struct EventHotKeyID EventHotKeyID;

enum { noErr = 0 };
enum { kEventClassKeyboard = 'keyb' };
enum { kEventHotKeyPressed = 5 };

extern "C" {
EventTargetRef _Nonnull GetApplicationEventTarget(void);
OSStatus InstallEventHandler(EventTargetRef _Nonnull inTarget, EventHandlerUPP _Nonnull inHandler,
                             ItemCount inNumTypes, const EventTypeSpec* _Nonnull inList,
                             void* _Nullable inUserData,
                             EventHandlerRef _Nullable* _Nullable outRef);
OSStatus RemoveEventHandler(EventHandlerRef _Nonnull inHandlerRef);
OSStatus RegisterEventHotKey(UInt32 inHotKeyCode, UInt32 inHotKeyModifiers,
                             EventHotKeyID inHotKeyID, EventTargetRef _Nonnull inTarget,
                             OptionBits inOptions, EventHotKeyRef _Nullable* _Nonnull outRef);
OSStatus UnregisterEventHotKey(EventHotKeyRef _Nonnull inHotKey);
}
