#include "end_to_end/driver/OpenedUrls.h"

#include <sstream>

#include "tests/support/Files.h"

namespace navora::driver {

namespace {

constexpr const char* schemes[] = {"http", "https", "mailto", "tel"};

}  // namespace

OpenedUrls::OpenedUrls(const std::filesystem::path& dataHome,
                       const std::filesystem::path& configHome, std::filesystem::path record)
    : record_(std::move(record)) {
  const std::filesystem::path script = dataHome / "record-opened-url";
  writeFile(script, "#!/bin/sh\nprintf '%s\\n' \"$1\" >> '" + record_.string() + "'\n");
  std::filesystem::permissions(script, std::filesystem::perms::owner_all);

  std::string types;
  std::string defaults;
  for (const char* scheme : schemes) {
    const std::string type = std::string("x-scheme-handler/") + scheme;
    types += type + ";";
    defaults += type + "=record-opened-url.desktop\n";
  }
  writeFile(dataHome / "applications/record-opened-url.desktop",
            "[Desktop Entry]\nType=Application\nName=Recorder of opened addresses\nExec=" +
                script.string() + " %u\nNoDisplay=true\nMimeType=" + types + "\n");
  writeFile(configHome / "mimeapps.list", "[Default Applications]\n" + defaults);
}

std::vector<std::string> OpenedUrls::all() const {
  std::vector<std::string> urls;
  std::istringstream lines(readFile(record_));
  for (std::string line; std::getline(lines, line);)
    urls.push_back(line);
  return urls;
}

void OpenedUrls::clear() {
  std::filesystem::remove(record_);
}

std::string OpenedUrls::waitForFirst(std::chrono::milliseconds timeout) const {
  waitUntil([this] { return !all().empty(); }, "an address is opened outside the application",
            timeout);
  return all().front();
}

}  // namespace navora::driver
