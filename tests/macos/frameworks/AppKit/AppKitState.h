#pragma once

#include <functional>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>

namespace navora::doubles {

// The desktop as the doubles of AppKit show it, and what was recorded. Returns to these initial
// values after every test.
struct AppKitState {
  static AppKitState& shared();

  struct Screen {
    NSRect frame;
    NSRect visibleFrame;
  };

  // The first is the main screen.
  std::vector<Screen> screens = {{{{0, 0}, {1440, 900}}, {{0, 0}, {1440, 875}}}};
  NSPoint mouse = {0, 0};

  // The name of the application that has the keyboard, or empty.
  std::string frontmost = {};
  bool frontmostIsTerminated = false;
  std::vector<std::string> activated = {};

  // What has the keyboard.
  id firstResponder = nil;
  // The names of the actions that the application object was asked to perform.
  std::vector<std::string> applicationActions = {};

  // Whether there is a program for every address.
  bool opensUrls = true;
  std::vector<std::string> openedUrls = {};
};

// Acts as the system after sleep.
void wake();

NSEvent* makeKeyEvent(unsigned short keyCode, NSEventModifierFlags modifiers);
// A press of the key that types this character without modifiers.
NSEvent* makeCharacterEvent(char character, NSEventModifierFlags modifiers);
// Acts as a key press in a window of the application. Returns the event that the window gets, or
// nil if a monitor has stopped it.
NSEvent* dispatchKeyDown(NSEvent* event);

}  // namespace navora::doubles
