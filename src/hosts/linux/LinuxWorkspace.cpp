#include "hosts/linux/LinuxWorkspace.h"

#include <gdk/gdk.h>

#include "hosts/linux/GLibSupport.h"

namespace navora {

void LinuxWorkspace::open(const Url& url) {
  const auto context = GObjectPtr<GdkAppLaunchContext>::adopt(
      gdk_display_get_app_launch_context(gdk_display_get_default()));
  // Asynchronous: finding and starting the browser may take the desktop a while. A desktop without
  // an application for this address has nothing to open it with, and nothing to report.
  g_app_info_launch_default_for_uri_async(url.string().c_str(), G_APP_LAUNCH_CONTEXT(context.get()),
                                          nullptr, nullptr, nullptr);
}

}  // namespace navora
