#pragma once

#include <filesystem>

#include <httplib.h>

namespace navora::service {

/// "/updates/NAME": the feed "appcast.xml" and the archives that it names, from a directory and
/// without a session. An empty path stands for no directory: there is a feed without items then,
/// and nothing else.
void addUpdateRoutes(httplib::Server& server, std::filesystem::path directory);

}  // namespace navora::service
