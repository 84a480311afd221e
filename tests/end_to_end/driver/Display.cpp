#include "end_to_end/driver/Display.h"

#include <algorithm>
#include <sstream>

namespace navora::driver {

namespace {

constexpr std::uint32_t fromPager = 2;  // the source indication that window managers obey
constexpr std::uint32_t iconicState = 3;
constexpr int deepestFrame = 3;

bool listed(const std::vector<std::string>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

bool WindowInfo::hasType(std::string_view name) const {
  return listed(types, name);
}

bool WindowInfo::hasState(std::string_view name) const {
  return listed(states, name);
}

Display::Display(const std::string& name) : name_(name), connection_(name) {}

WindowId Display::activeWindowId() {
  const auto active = connection_.numbersProperty(connection_.root(), "_NET_ACTIVE_WINDOW");
  return active.empty() ? 0 : active.front();
}

std::optional<WindowInfo> Display::describe(xcb_window_t window, WindowId active) {
  xcb_connection_t* x = connection_.get();
  const auto attributesCookie = xcb_get_window_attributes(x, window);
  const auto geometryCookie = xcb_get_geometry(x, window);
  const auto positionCookie = xcb_translate_coordinates(x, window, connection_.root(), 0, 0);
  const XReply<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(x, attributesCookie, nullptr));
  const XReply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(x, geometryCookie, nullptr));
  const XReply<xcb_translate_coordinates_reply_t> position(
      xcb_translate_coordinates_reply(x, positionCookie, nullptr));
  if (!attributes || !geometry || !position) return std::nullopt;

  WindowInfo info;
  info.id = window;
  info.mapped = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
  info.overrideRedirect = attributes->override_redirect != 0;
  info.content = {position->dst_x, position->dst_y, geometry->width, geometry->height};
  info.active = active == window;
  info.title = connection_.textProperty(window, "_NET_WM_NAME");
  if (info.title.empty()) info.title = connection_.textProperty(window, "WM_NAME");
  const std::string names = connection_.textProperty(window, "WM_CLASS");
  const std::size_t middle = names.find('\0');
  info.instanceName = names.substr(0, middle);
  if (middle != std::string::npos) info.className = names.substr(middle + 1).c_str();
  const auto pid = connection_.numbersProperty(window, "_NET_WM_PID");
  if (!pid.empty()) info.pid = static_cast<pid_t>(pid.front());
  const auto state = connection_.numbersProperty(window, "WM_STATE");
  info.minimised = !state.empty() && state.front() == iconicState;
  for (xcb_atom_t atom : connection_.numbersProperty(window, "_NET_WM_WINDOW_TYPE")) {
    info.types.push_back(connection_.atomName(atom));
  }
  for (xcb_atom_t atom : connection_.numbersProperty(window, "_NET_WM_STATE")) {
    info.states.push_back(connection_.atomName(atom));
  }
  return info;
}

void Display::collect(xcb_window_t window, int depth, WindowId active,
                      std::vector<WindowInfo>& found) {
  if (connection_.hasProperty(window, "WM_CLASS")) {
    if (auto info = describe(window, active)) found.push_back(std::move(*info));
    return;
  }
  // Frame windows have no WM_CLASS; the client window is inside.
  if (depth == deepestFrame) return;
  for (xcb_window_t child : connection_.children(window))
    collect(child, depth + 1, active, found);
}

std::vector<WindowInfo> Display::windows() {
  std::vector<WindowInfo> found;
  const WindowId active = activeWindowId();
  for (xcb_window_t window : connection_.children(connection_.root())) {
    collect(window, 0, active, found);
  }
  return found;
}

std::vector<WindowInfo> Display::windows(const Predicate& predicate) {
  std::vector<WindowInfo> found = windows();
  std::erase_if(found, [&](const WindowInfo& info) { return !predicate(info); });
  return found;
}

std::optional<WindowInfo> Display::window(WindowId id) {
  return describe(id, activeWindowId());
}

std::optional<WindowInfo> Display::activeWindow() {
  const WindowId id = activeWindowId();
  return id == 0 ? std::nullopt : describe(id, id);
}

WindowInfo Display::waitForWindow(const Predicate& predicate, std::string_view description,
                                  std::chrono::milliseconds timeout) {
  const auto topmost = [&]() -> std::optional<WindowInfo> {
    const auto found = windows(predicate);
    return found.empty() ? std::nullopt : std::optional(found.back());
  };
  return waitFor(topmost, description, timeout, [this] { return describeWindows(); });
}

std::string Display::describeWindows() {
  std::ostringstream text;
  for (const WindowInfo& info : windows()) {
    text << "window " << info.id << " \"" << info.title << "\" class " << info.className << " pid "
         << info.pid << " at " << info.content.x << "," << info.content.y << " size "
         << info.content.width << "x" << info.content.height << (info.mapped ? " mapped" : "")
         << (info.minimised ? " minimised" : "") << (info.active ? " active" : "") << "\n";
  }
  return text.str();
}

void Display::close(WindowId id) {
  connection_.sendToWindowManager(id, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, fromPager});
}

void Display::minimise(WindowId id) {
  connection_.sendToWindowManager(id, "WM_CHANGE_STATE", {iconicState});
}

void Display::activate(WindowId id) {
  connection_.sendToWindowManager(id, "_NET_ACTIVE_WINDOW", {fromPager, XCB_CURRENT_TIME, 0});
}

void Display::resize(WindowId id, int width, int height) {
  constexpr std::uint32_t widthAndHeight = 1U << 10 | 1U << 11;
  connection_.sendToWindowManager(
      id, "_NET_MOVERESIZE_WINDOW",
      {widthAndHeight | fromPager << 12, 0, 0, static_cast<std::uint32_t>(width),
       static_cast<std::uint32_t>(height)});
}

void Display::waitUntilActive(WindowId id, std::chrono::milliseconds timeout) {
  waitUntil([&] { return activeWindowId() == id; },
            "the window " + std::to_string(id) + " is active", timeout,
            [this] { return describeWindows(); });
}

}  // namespace navora::driver
