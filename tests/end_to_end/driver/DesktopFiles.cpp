#include "end_to_end/driver/DesktopFiles.h"

namespace navora::driver {

std::string busConfiguration(const std::filesystem::path& socket,
                             const std::filesystem::path& serviceFolder) {
  return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:path=)" +
         socket.string() + R"(</listen>
  <servicedir>)" +
         serviceFolder.string() + R"(</servicedir>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow receive_sender="*" eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

std::string windowManagerConfiguration() {
  // Without sections for keys and mouse, openbox has few bindings: Alt+F4, Alt+Tab, the frame.
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus>
    <focusNew>yes</focusNew>
    <followMouse>no</followMouse>
  </focus>
  <placement>
    <policy>Smart</policy>
    <center>yes</center>
  </placement>
  <theme>
    <name>Clearlooks</name>
    <animateIconify>no</animateIconify>
  </theme>
  <desktops>
    <number>1</number>
    <popupTime>0</popupTime>
  </desktops>
</openbox_config>
)";
}

std::string toolkitSettings(bool dark) {
  const std::string theme = dark ? "1" : "0";
  return "[Settings]\n"
         "gtk-enable-animations=0\n"
         "gtk-cursor-blink=0\n"
         "gtk-overlay-scrolling=0\n"
         "gtk-theme-name=Adwaita\n"
         "gtk-icon-theme-name=Adwaita\n"
         "gtk-font-name=DejaVu Sans 10\n"
         "gtk-recent-files-enabled=0\n"
         // Otherwise an installed input method that suits the language is used.
         "gtk-im-module=gtk-im-context-simple\n"
         "gtk-application-prefer-dark-theme=" +
         theme + "\n";
}

}  // namespace navora::driver
