#pragma once

#include <filesystem>
#include <string>

namespace navora::driver {

// The configuration files of the programs that make up a virtual desktop.

// For dbus-daemon: listens on a socket at `socket` and starts nothing but the services described in
// `serviceFolder`.
std::string busConfiguration(const std::filesystem::path& socket,
                             const std::filesystem::path& serviceFolder);

// For openbox: one workspace, focus by click, new windows focused.
std::string windowManagerConfiguration();

// For GTK 3: nothing that moves by itself, so that two screenshots of one state are equal.
std::string toolkitSettings(bool dark);

}  // namespace navora::driver
