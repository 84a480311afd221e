#pragma once

#include <filesystem>

#include <httplib.h>

namespace navora::service {

// Registers "/updates/NAME", which serves the feed "appcast.xml" and its archives from `directory`
// without a session. With an empty path it serves a feed without items and nothing else.
void addUpdateRoutes(httplib::Server& server, std::filesystem::path directory);

}  // namespace navora::service
