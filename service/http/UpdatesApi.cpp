#include "service/http/UpdatesApi.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace navora::service {
namespace {

constexpr const char* feedName = "appcast.xml";
constexpr std::size_t pieceSize = 64 * 1024;

constexpr const char* emptyFeed = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0">
  <channel>
    <title>Navora</title>
    <link>https://navora.example/</link>
    <description>Updates of Navora for the desktop</description>
  </channel>
</rss>
)";

// A regular file, kept open while it is sent, so that replacing it does not change a download in
// progress.
class OpenFile {
 public:
  explicit OpenFile(const std::filesystem::path& path)
      // O_NOFOLLOW refuses links out of the directory; O_NONBLOCK does not wait for a FIFO's
      // writer.
      : descriptor_(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)) {}
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  // Returns the size in bytes, or nullopt unless this is a regular file.
  std::optional<std::size_t> size() const {
    struct stat status{};
    if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
      return std::nullopt;
    }
    return static_cast<std::size_t>(status.st_size);
  }

  // Sends at most `length` bytes; returns false at the end of the file or if the client has
  // disconnected.
  bool send(std::size_t offset, std::size_t length, httplib::DataSink& sink) const {
    std::array<char, pieceSize> piece{};
    const auto size = ::pread(descriptor_, piece.data(), std::min(length, piece.size()),
                              static_cast<off_t>(offset));
    return size > 0 && sink.write(piece.data(), static_cast<std::size_t>(size));
  }

 private:
  int descriptor_;
};

bool isPlainName(const std::string& name) {
  return !name.empty() && name.front() != '.' && name.find_first_of("/\\") == std::string::npos &&
         name.find('\0') == std::string::npos;
}

const char* typeOf(const std::string& name) {
  return name == feedName ? "application/xml" : "application/octet-stream";
}

void sendFile(const std::filesystem::path& directory, const std::string& name,
              httplib::Response& response) {
  const auto file = std::make_shared<const OpenFile>(directory / name);
  const auto size = file->size();
  if (!size) {
    response.status = 404;
  } else if (*size == 0) {
    response.set_content("", typeOf(name));
  } else {
    response.set_content_provider(*size, typeOf(name),
                                  [file](std::size_t offset, std::size_t length, auto& sink) {
                                    return file->send(offset, length, sink);
                                  });
  }
}

}  // namespace

void addUpdateRoutes(httplib::Server& server, std::filesystem::path directory) {
  server.Get("/updates/(.+)", [directory = std::move(directory)](const httplib::Request& request,
                                                                 httplib::Response& response) {
    const std::string name = request.matches[1].str();
    response.set_header("Cache-Control", "no-store");
    if (!directory.empty() && isPlainName(name)) {
      sendFile(directory, name, response);
    } else if (directory.empty() && name == feedName) {
      response.set_content(emptyFeed, typeOf(name));
    } else {
      response.status = 404;
    }
  });
}

}  // namespace navora::service
