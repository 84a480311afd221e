#include "end_to_end/driver/XConnection.h"

#include <algorithm>

#include "tests/support/Wait.h"

namespace navora::driver {

XConnection::XConnection(const std::string& displayName) {
  int number = 0;
  connection_ = xcb_connect(displayName.c_str(), &number);
  if (xcb_connection_has_error(connection_)) {
    xcb_disconnect(connection_);
    throw TestError("Cannot connect to the display " + displayName);
  }
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
  for (; number > 0; --number)
    xcb_screen_next(&screens);
  screen_ = screens.data;
}

XConnection::~XConnection() {
  xcb_disconnect(connection_);
}

xcb_atom_t XConnection::atom(std::string_view name) {
  const auto known = atoms_.find(std::string(name));
  if (known != atoms_.end()) return known->second;
  const auto cookie =
      xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
  if (!reply) throw TestError("The display has exited");
  atoms_[std::string(name)] = reply->atom;
  return reply->atom;
}

std::string XConnection::atomName(xcb_atom_t atom) {
  const XReply<xcb_get_atom_name_reply_t> reply(
      xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
  if (!reply) return {};
  return {xcb_get_atom_name_name(reply.get()),
          static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

XReply<xcb_get_property_reply_t> XConnection::property(xcb_window_t window, std::string_view name) {
  constexpr std::uint32_t everything = 1U << 20;
  const auto cookie = xcb_get_property(connection_, 0, window, atom(name),
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, everything);
  return XReply<xcb_get_property_reply_t>(xcb_get_property_reply(connection_, cookie, nullptr));
}

std::string XConnection::textProperty(xcb_window_t window, std::string_view name) {
  const auto reply = property(window, name);
  if (!reply || reply->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<std::uint32_t> XConnection::numbersProperty(xcb_window_t window,
                                                        std::string_view name) {
  const auto reply = property(window, name);
  if (!reply || reply->format != 32) return {};
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

void XConnection::setTextProperty(xcb_window_t window, std::string_view name,
                                  std::string_view text) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), atom("UTF8_STRING"),
                      8, static_cast<std::uint32_t>(text.size()), text.data());
  synchronize();
}

bool XConnection::hasProperty(xcb_window_t window, std::string_view name) {
  const auto reply = property(window, name);
  return reply && reply->type != XCB_ATOM_NONE;
}

std::vector<xcb_window_t> XConnection::children(xcb_window_t window) {
  const XReply<xcb_query_tree_reply_t> reply(
      xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  if (!reply) return {};
  const xcb_window_t* first = xcb_query_tree_children(reply.get());
  return {first, first + xcb_query_tree_children_length(reply.get())};
}

void XConnection::sendToWindowManager(xcb_window_t window, std::string_view message,
                                      const std::vector<std::uint32_t>& data) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(message);
  std::copy_n(data.begin(), std::min<std::size_t>(data.size(), 5), event.data.data32);
  xcb_send_event(connection_, 0, root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  synchronize();
}

void XConnection::synchronize() {
  const XReply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  if (!reply) throw TestError("The display has exited");
  // The only events are errors of requests about destroyed windows.
  while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
  }
}

}  // namespace navora::driver
