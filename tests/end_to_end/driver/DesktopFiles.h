#pragma once

#include <filesystem>
#include <string>

namespace navora::driver {

// The configuration files of the programs on a virtual desktop.

// Returns a configuration of dbus-daemon: it listens at `socket` and starts only the services in
// `serviceFolder`.
std::string busConfiguration(const std::filesystem::path& socket,
                             const std::filesystem::path& serviceFolder);

// Returns a configuration of openbox: one workspace, click to focus, new windows focused.
std::string windowManagerConfiguration();

// Returns settings for GTK 3 without animations, so that two screenshots of one state are equal.
std::string toolkitSettings(bool dark);

}  // namespace navora::driver
