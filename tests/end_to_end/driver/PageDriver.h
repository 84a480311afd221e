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

// A page that includes the service's driver script: scripts run in it, and its elements are hit
// with the desktop's real pointer and keys. Pages that follow each other in one view share a name.
class PageDriver {
 public:
  // `url` is the service's control address, whatever the page's own origin is. `area` gives the
  // screen rectangle of the window or frame that shows the page; its centre must be the page's.
  PageDriver(VirtualDesktop& desktop, const std::string& url, std::function<Rectangle()> area,
             std::string name = "main");
  // The page in a frame of this page, named `name`; this driver must outlive it.
  PageDriver frame(const std::string& selector, const std::string& name);

  // The body of an asynchronous function: "return document.title". A TestError when the script
  // throws, the page goes away, or no page answers in time.
  Json evaluate(const std::string& script, std::chrono::milliseconds timeout = defaultTimeout());
  // The same, but nothing in place of an error.
  std::optional<Json> tryEvaluate(const std::string& script,
                                  std::chrono::milliseconds timeout = std::chrono::seconds(5));
  // Polls an expression ("location.pathname === '/'") until it is truthy, through page changes.
  void waitUntilTrue(const std::string& expression, std::string_view description = {},
                     std::chrono::milliseconds timeout = defaultTimeout());

  bool exists(const std::string& selector);
  // The rendered text of an element, once there is one.
  std::string text(const std::string& selector);
  std::string path() { return evaluate("return location.pathname"); }

  // Where the element is on the screen, after it was scrolled into view; waits until it is there,
  // visible and not covered by another element.
  Rectangle rectangle(const std::string& selector);
  // With the real pointer; `modifiers` are keys held meanwhile ("Control+Shift").
  void click(const std::string& selector, MouseButton button = MouseButton::left,
             std::string_view modifiers = {});
  // Clicks the element and types with real keys.
  void type(const std::string& selector, std::string_view text);

 private:
  struct Answer {
    std::optional<Json> value;
    std::string error;
  };
  Answer ask(const std::string& script, std::chrono::milliseconds timeout);
  void focusByClick(const std::string& selector);
  // From coordinates of the page's viewport to those of the screen.
  Point viewportOrigin();

  VirtualDesktop& desktop_;
  HttpClient http_;
  std::function<Rectangle()> area_;
  std::string name_;
};

}  // namespace navora::driver
