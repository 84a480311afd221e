#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <xcb/xcb.h>

namespace navora::driver {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using XReply = std::unique_ptr<Reply, FreeReply>;

// A client connection to an X display: atoms, properties and messages to the window manager. A
// window can be destroyed at any time; queries about it then return empty values.
class XConnection {
 public:
  explicit XConnection(const std::string& displayName);
  ~XConnection();
  XConnection(const XConnection&) = delete;
  XConnection& operator=(const XConnection&) = delete;

  xcb_connection_t* get() const { return connection_; }
  const xcb_screen_t& screen() const { return *screen_; }
  xcb_window_t root() const { return screen_->root; }

  xcb_atom_t atom(std::string_view name);
  std::string atomName(xcb_atom_t atom);
  // Returns an empty value if the window or the property does not exist.
  std::string textProperty(xcb_window_t window, std::string_view property);
  std::vector<std::uint32_t> numbersProperty(xcb_window_t window, std::string_view property);
  void setTextProperty(xcb_window_t window, std::string_view property, std::string_view text);
  bool hasProperty(xcb_window_t window, std::string_view property);
  // Returns the windows from bottom to top.
  std::vector<xcb_window_t> children(xcb_window_t window);
  // Sends an EWMH client message about a window to the root window.
  void sendToWindowManager(xcb_window_t window, std::string_view message,
                           const std::vector<std::uint32_t>& data);
  // Waits until the server has processed all earlier requests.
  void synchronize();

 private:
  XReply<xcb_get_property_reply_t> property(xcb_window_t window, std::string_view name);

  xcb_connection_t* connection_;
  xcb_screen_t* screen_;
  std::unordered_map<std::string, xcb_atom_t> atoms_;
};

}  // namespace navora::driver
