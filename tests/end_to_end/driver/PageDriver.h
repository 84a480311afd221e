#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "end_to_end/driver/Geometry.h"
#include "end_to_end/driver/Mouse.h"
#include "tests/support/HttpClient.h"
#include "tests/support/Wait.h"

namespace navora::driver {

using Json = nlohmann::json;

class VirtualDesktop;

// Drives a page that includes the service's driver script: runs scripts in it, and operates its
// elements with the desktop's real pointer and keys. Successive pages in one view share a name.
class PageDriver {
 public:
  // `url` is the control address of the service, even if the page has another origin. `area`
  // returns the screen rectangle of the window or frame that shows the page; both have the same
  // centre.
  PageDriver(VirtualDesktop& desktop, const std::string& url, std::function<Rectangle()> area,
             std::string name = "main");
  // Returns a driver for the page in a frame of this page, named `name`. This driver must outlive
  // it.
  PageDriver frame(const std::string& selector, const std::string& name);

  // Runs the body of an asynchronous function ("return document.title") and returns its value.
  // Throws TestError if the script throws, the page is unloaded, or no page answers in time.
  Json evaluate(const std::string& script, std::chrono::milliseconds timeout = defaultTimeout());
  // Runs a script like evaluate(), but returns nullopt on error.
  std::optional<Json> tryEvaluate(const std::string& script,
                                  std::chrono::milliseconds timeout = std::chrono::seconds(5));
  // Polls an expression ("location.pathname === '/'") until it is truthy, across page changes.
  void waitUntilTrue(const std::string& expression, std::string_view description = {},
                     std::chrono::milliseconds timeout = defaultTimeout());

  // Waits until everything that the page contains now is on the screen. The top left corner of the
  // page must not be covered.
  void waitUntilPainted();

  bool exists(const std::string& selector);
  // Waits for an element and returns its rendered text.
  std::string text(const std::string& selector);
  std::string path() { return evaluate("return location.pathname"); }

  // Scrolls the element into view and returns its rectangle on the screen. Waits until it exists,
  // is visible, has stopped moving and is not covered by another element.
  Rectangle rectangle(const std::string& selector);
  // Clicks with the real pointer while the keys `modifiers` ("Control+Shift") are held.
  void click(const std::string& selector, MouseButton button = MouseButton::left,
             std::string_view modifiers = {});
  // Types into the element with real keys, after clicking it unless it has the focus.
  void type(const std::string& selector, std::string_view text);

 private:
  struct Answer {
    std::optional<Json> value;
    std::string error;
  };
  Answer ask(const std::string& script, std::chrono::milliseconds timeout);
  void focusByClick(const std::string& selector);
  // Returns the screen coordinates of the viewport's top left corner.
  Point viewportOrigin();

  VirtualDesktop& desktop_;
  HttpClient http_;
  std::function<Rectangle()> area_;
  std::string name_;
};

}  // namespace navora::driver
