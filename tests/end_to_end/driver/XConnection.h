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

// A client connection to one X display: atoms, properties and messages to the window manager. A
// window can vanish at any moment, so a question about one that is gone answers "nothing".
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
  // Empty when the window or the property does not exist.
  std::string textProperty(xcb_window_t window, std::string_view property);
  std::vector<std::uint32_t> numbersProperty(xcb_window_t window, std::string_view property);
  void setTextProperty(xcb_window_t window, std::string_view property, std::string_view text);
  bool hasProperty(xcb_window_t window, std::string_view property);
  // Bottom to top.
  std::vector<xcb_window_t> children(xcb_window_t window);
  // A request to the window manager as the EWMH describes them: a client message to the root
  // window.
  void sendToWindowManager(xcb_window_t window, std::string_view message,
                           const std::vector<std::uint32_t>& data);
  // Returns when the server has carried out every request sent before.
  void synchronize();

 private:
  XReply<xcb_get_property_reply_t> property(xcb_window_t window, std::string_view name);

  xcb_connection_t* connection_;
  xcb_screen_t* screen_;
  std::unordered_map<std::string, xcb_atom_t> atoms_;
};

}  // namespace navora::driver
