#include "hosts/linux/system/LinuxUserDefaults.h"

#include <iostream>
#include <string>
#include <utility>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"

namespace navora {
namespace {

constexpr int privateMode = 0600;
constexpr int indentation = 2;

void report(const std::filesystem::path& file, std::string_view problem) {
  std::cerr << "Navora: " << file.string() << ": " << problem << "\n";
}

}  // namespace

LinuxUserDefaults::LinuxUserDefaults()
    : LinuxUserDefaults(std::filesystem::path(g_get_user_config_dir()) / "navora" /
                        "defaults.json") {}

LinuxUserDefaults::LinuxUserDefaults(std::filesystem::path file) : file_(std::move(file)) {
  load();
}

std::optional<Json> LinuxUserDefaults::value(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return *found;
}

void LinuxUserDefaults::setValue(std::string_view key, Json value) {
  values_[std::string(key)] = std::move(value);
  save();
}

void LinuxUserDefaults::removeValue(std::string_view key) {
  if (values_.erase(std::string(key)) > 0) save();
}

void LinuxUserDefaults::load() {
  char* contents = nullptr;
  gsize length = 0;
  GErrorPtr error;
  if (g_file_get_contents(file_.c_str(), &contents, &length, error.out()) == FALSE) {
    if (error.matches(G_FILE_ERROR, G_FILE_ERROR_NOENT)) return;
    report(file_, error->message);
    persistent_ = false;
    return;
  }
  const GCharPtr owner(contents);
  auto values = parseJson({contents, length});
  if (values && values->is_object()) {
    values_ = *std::move(values);
  } else {
    setDamagedFileAside();
  }
}

void LinuxUserDefaults::setDamagedFileAside() {
  auto aside = file_;
  aside += ".damaged";
  std::error_code error;
  std::filesystem::rename(file_, aside, error);
  report(file_, error ? "damaged; starting with no values"
                      : "damaged; kept as " + aside.filename().string());
}

void LinuxUserDefaults::save() {
  if (!persistent_) return;
  std::error_code ignored;
  std::filesystem::create_directories(file_.parent_path(), ignored);
  const std::string text =
      values_.dump(indentation, ' ', false, Json::error_handler_t::replace) + "\n";
  GErrorPtr error;
  const auto flags = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                                        G_FILE_SET_CONTENTS_DURABLE);
  if (g_file_set_contents_full(file_.c_str(), text.data(), static_cast<gssize>(text.size()), flags,
                               privateMode, error.out()) == FALSE) {
    report(file_, error->message);
  }
}

}  // namespace navora
