#include "hosts/linux/workspace/LinuxWorkspace.h"

#include <memory>
#include <string>

#include <gdk/gdk.h>

#include "hosts/linux/system/DebugLog.h"
#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/workspace/LinuxRunningApplication.h"
#include "hosts/linux/workspace/ScreenGeometry.h"

namespace navora {
namespace {

Screen screenFrom(GdkMonitor* monitor) {
  const ScreenGeometry geometry;
  GdkRectangle frame{};
  GdkRectangle workArea{};
  gdk_monitor_get_geometry(monitor, &frame);
  gdk_monitor_get_workarea(monitor, &workArea);
  return {geometry.toCore(frame), geometry.toCore(workArea)};
}

// Logs a failure for debugging only: a missing handler for the scheme is not reported to the user.
void onLaunched(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<std::string> address(static_cast<std::string*>(data));
  GErrorPtr error;
  if (g_app_info_launch_default_for_uri_finish(result, error.out()) != FALSE) return;
  debugLog(DebugArea::navigation, "No program opened " + *address + ": " + error->message);
}

}  // namespace

void LinuxWorkspace::open(const Url& url) {
  const auto context = GObjectPtr<GdkAppLaunchContext>::adopt(
      gdk_display_get_app_launch_context(gdk_display_get_default()));
  // Asynchronous, because looking up and starting the handler can take seconds.
  g_app_info_launch_default_for_uri_async(url.textAsParsed().c_str(),
                                          G_APP_LAUNCH_CONTEXT(context.get()), nullptr, onLaunched,
                                          new std::string(url.string()));
}

std::shared_ptr<RunningApplication> LinuxWorkspace::frontmostApplication() {
  return LinuxRunningApplication::frontmost();
}

std::vector<Screen> LinuxWorkspace::screens() const {
  GdkDisplay* display = gdk_display_get_default();
  const int count = gdk_display_get_n_monitors(display);
  std::vector<Screen> screens;
  screens.reserve(static_cast<std::size_t>(count));
  for (int index = 0; index < count; ++index)
    screens.push_back(screenFrom(gdk_display_get_monitor(display, index)));
  return screens;
}

std::optional<Screen> LinuxWorkspace::mainScreen() const {
  GdkMonitor* monitor = mainMonitor();
  return monitor == nullptr ? std::nullopt : std::optional(screenFrom(monitor));
}

Point LinuxWorkspace::mouseLocation() const {
  GdkSeat* seat = gdk_display_get_default_seat(gdk_display_get_default());
  int x = 0;
  int y = 0;
  gdk_device_get_position(gdk_seat_get_pointer(seat), nullptr, &x, &y);
  // The centre of the pixel: in the core's coordinates, edges lie between pixels.
  const Point corner = ScreenGeometry().toCore(x, y);
  return {corner.x + 0.5, corner.y - 0.5};
}

}  // namespace navora
