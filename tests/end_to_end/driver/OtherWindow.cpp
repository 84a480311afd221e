#include "end_to_end/driver/OtherWindow.h"

namespace navora::driver {

namespace {

constexpr std::uint16_t size = 60;

}  // namespace

OtherWindow::OtherWindow(Display& display)
    : connection_(display.connection()), window_(xcb_generate_id(connection_.get())) {
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, connection_.root(), 0, 0,
                    size, size, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  connection_.setTextProperty(window_, "WM_CLASS", "other");
  xcb_map_window(connection_.get(), window_);
  connection_.synchronize();
  waitUntil(
      [&] {
        const auto info = display.window(window_);
        return info && info->mapped;
      },
      "the other window is shown");
  display.activate(window_);
  display.waitUntilActive(window_);
}

OtherWindow::~OtherWindow() {
  xcb_destroy_window(connection_.get(), window_);
  connection_.synchronize();
}

}  // namespace navora::driver
