#include "hosts/linux/system/LinuxSystem.h"

#include <cstdlib>
#include <iostream>
#include <string_view>
#include <utility>

#include <gio/gio.h>

#include "hosts/linux/system/DebugLog.h"
#include "hosts/linux/system/GLibSupport.h"

namespace navora {
namespace {

// Calls back when a file is created, replaced or written.
class FileObserver final : public ObserverToken {
 public:
  FileObserver(const std::filesystem::path& path, std::function<void()> callback)
      : callback_(std::move(callback)) {
    const auto file = GObjectPtr<GFile>::adopt(g_file_new_for_path(path.c_str()));
    // Null if the system cannot watch files.
    monitor_ = GObjectPtr<GFileMonitor>::adopt(
        g_file_monitor_file(file.get(), G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr));
    if (monitor_)
      changed_ = SignalConnection(monitor_.get(), "changed", G_CALLBACK(onChanged), this);
  }

 private:
  static void onChanged(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent event, gpointer self) {
    // One of these follows every change, when the new content is complete.
    if (event == G_FILE_MONITOR_EVENT_CHANGES_DONE_HINT || event == G_FILE_MONITOR_EVENT_CREATED ||
        event == G_FILE_MONITOR_EVENT_RENAMED || event == G_FILE_MONITOR_EVENT_MOVED_IN) {
      // A copy: the callback may destroy this observer.
      const auto callback = static_cast<FileObserver*>(self)->callback_;
      callback();
    }
  }

  std::function<void()> callback_;
  GObjectPtr<GFileMonitor> monitor_;
  SignalConnection changed_;
};

// Returns whether a locale's name is "C" or "POSIX", with or without an encoding (POSIX.1, 7.2).
bool isPosixLocale(std::string_view name) {
  const std::string_view locale = name.substr(0, name.find('.'));
  return locale == "C" || locale == "POSIX";
}

}  // namespace

LinuxSystem::LinuxSystem(ObserveResume observeResume, SystemTimeZone timeZone)
    : observeResume_(std::move(observeResume)), timeZone_(std::move(timeZone)) {}

std::optional<std::string> LinuxSystem::environmentVariable(const std::string& name) const {
  const char* value = std::getenv(name.c_str());
  if (value == nullptr) return std::nullopt;
  return value;
}

std::vector<std::string> LinuxSystem::preferredLanguages() const {
  std::vector<std::string> languages;
  for (const char* const* name = g_get_language_names(); *name != nullptr; ++name) {
    // GLib ends every list with "C".
    if (!isPosixLocale(*name)) languages.emplace_back(*name);
  }
  // The texts of the POSIX locale are in English.
  if (languages.empty()) languages.emplace_back("en");
  return languages;
}

std::string LinuxSystem::timeZoneIdentifier() const {
  return timeZone_.identifier(environmentVariable("TZ"));
}

Date LinuxSystem::now() const {
  return std::chrono::system_clock::now();
}

std::optional<std::string> LinuxSystem::asciiHostName(const std::string& host) const {
  const GCharPtr ascii(g_hostname_to_ascii(host.c_str()));
  return ascii ? std::optional<std::string>(ascii.get()) : std::nullopt;
}

std::string LinuxSystem::randomUuid() const {
  return GCharPtr(g_uuid_string_random()).get();
}

void LinuxSystem::log(const std::string& line) const {
  std::cerr << line << '\n';
}

void LinuxSystem::debug(DebugArea area, const std::string& line) const {
  debugLog(area, line);
}

std::unique_ptr<ObserverToken> LinuxSystem::observeTimeZoneChange(std::function<void()> callback) {
  return std::make_unique<FileObserver>(timeZone_.localTimeFile(), std::move(callback));
}

std::unique_ptr<ObserverToken> LinuxSystem::observeWake(std::function<void()> callback) {
  return observeResume_(std::move(callback));
}

}  // namespace navora
