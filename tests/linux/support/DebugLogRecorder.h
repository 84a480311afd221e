#pragma once

#include <string>
#include <vector>

#include <glib.h>

namespace navora {

// Records the debug lines of one log domain while it exists, turned on or not.
class DebugLogRecorder {
 public:
  explicit DebugLogRecorder(const char* domain)
      : domain_(domain), handler_(g_log_set_handler(domain, G_LOG_LEVEL_DEBUG, record, this)) {}
  ~DebugLogRecorder() { g_log_remove_handler(domain_, handler_); }
  DebugLogRecorder(const DebugLogRecorder&) = delete;
  DebugLogRecorder& operator=(const DebugLogRecorder&) = delete;

  const std::vector<std::string>& lines() const { return lines_; }

 private:
  static void record(const char*, GLogLevelFlags, const char* line, gpointer self) {
    static_cast<DebugLogRecorder*>(self)->lines_.emplace_back(line);
  }

  const char* domain_;
  guint handler_;
  std::vector<std::string> lines_;
};

}  // namespace navora
