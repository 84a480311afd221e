#include "hosts/linux/system/DebugLog.h"

#include <cstdlib>
#include <iostream>

#include <glib.h>

namespace navora {
namespace {

std::string logDomain(DebugArea area) {
  return "navora-" + std::string(debugAreaName(area));
}

}  // namespace

void enableDebugLog(std::string_view requestText) {
  const DebugRequest request = parseDebugRequest(requestText);
  if (const auto message = unknownDebugAreasMessage(request))
    std::cerr << "Navora: " << *message << '\n';
  if (request.areas.empty()) return;
  const char* inherited = std::getenv("G_MESSAGES_DEBUG");
  std::string domains = inherited == nullptr ? "" : inherited;
  for (const DebugArea area : request.areas)
    domains += ' ' + logDomain(area);
  constexpr gboolean overwrite = TRUE;
  g_setenv("G_MESSAGES_DEBUG", domains.c_str(), overwrite);
  // Standard output, GLib's default for debug messages, is for what the command line asks for.
  g_log_writer_default_set_use_stderr(TRUE);
}

void debugLog(DebugArea area, const std::string& line) {
  g_log(logDomain(area).c_str(), G_LOG_LEVEL_DEBUG, "%s", line.c_str());
}

}  // namespace navora
