#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "end_to_end/driver/Geometry.h"
#include "end_to_end/driver/Screenshot.h"
#include "end_to_end/driver/XConnection.h"
#include "tests/support/Wait.h"

namespace navora::driver {

using WindowId = std::uint32_t;

struct WindowInfo {
  WindowId id = 0;
  std::string title;
  std::string instanceName;  // the two parts of WM_CLASS
  std::string className;
  pid_t pid = 0;        // _NET_WM_PID; 0 if unset
  Rectangle content;    // without the frame of the window manager
  bool mapped = false;  // on the screen, though it may be covered
  bool minimised = false;
  bool active = false;              // the window manager's active window
  bool overrideRedirect = false;    // menus, tooltips and the like
  std::vector<std::string> types;   // names like _NET_WM_WINDOW_TYPE_DIALOG
  std::vector<std::string> states;  // names like _NET_WM_STATE_ABOVE

  bool hasType(std::string_view name) const;
  bool hasState(std::string_view name) const;
};

// The windows of an X display as the user and the window manager see them.
class Display {
 public:
  using Predicate = std::function<bool(const WindowInfo&)>;

  explicit Display(const std::string& name);

  const std::string& name() const { return name_; }
  XConnection& connection() { return connection_; }

  // Returns all windows with a class, bottom to top, including hidden ones.
  std::vector<WindowInfo> windows();
  std::vector<WindowInfo> windows(const Predicate& predicate);
  std::optional<WindowInfo> window(WindowId id);
  std::optional<WindowInfo> activeWindow();
  WindowInfo waitForWindow(const Predicate& predicate, std::string_view description,
                           std::chrono::milliseconds timeout = defaultTimeout());
  // Returns one line per window, for messages.
  std::string describeWindows();

  // Send requests to the window manager, as title bar buttons and a task bar do.
  void close(WindowId id);
  void minimise(WindowId id);
  void activate(WindowId id);
  void resize(WindowId id, int width, int height);
  void waitUntilActive(WindowId id, std::chrono::milliseconds timeout = defaultTimeout());

  Screenshot screenshot() { return Screenshot::capture(connection_); }
  Screenshot screenshot(Rectangle region) { return Screenshot::capture(connection_, region); }

 private:
  void collect(xcb_window_t window, int depth, WindowId active, std::vector<WindowInfo>& found);
  std::optional<WindowInfo> describe(xcb_window_t window, WindowId active);
  WindowId activeWindowId();

  std::string name_;
  XConnection connection_;
};

}  // namespace navora::driver
