#include "service/http/Routes.h"
#include "service/support/ZipArchive.h"

namespace navora::service {
namespace {

std::string markdown(const Json& capture) {
  std::string text = capture.value("raw", "") + "\n\n---\n" + capture.value("createdAt", "") + "\n";
  if (capture["summary"].is_string()) text += capture["summary"].get<std::string>() + "\n";
  return text;
}

}  // namespace

void addExportRoutes(Api& api, Storage& storage) {
  api.get("/api/export", [&storage](ApiCall& call) {
    const Json notes{{"user", call.user.name},
                     {"exportedAt", isoTime(currentTime())},
                     {"notes", storage.captures.list(call.user.id)}};
    call.response.set_header("Content-Disposition", "attachment; filename=\"navora-notes.json\"");
    call.response.set_content(notes.dump(2, ' ', false, Json::error_handler_t::replace) + "\n",
                              "application/json");
  });
  // No Content-Disposition: a web view downloads the file because it cannot show the type.
  api.get("/api/export/navora-notes.zip", [&storage](ApiCall& call) {
    ZipArchive archive;
    for (const Json& capture : storage.captures.list(call.user.id)) {
      const std::string day = capture.value("createdAt", "").substr(0, 10);
      const std::string id = capture.value("id", "").substr(0, 8);
      archive.add("navora-notes/" + day + "-" + id + ".md", markdown(capture));
    }
    call.response.set_content(archive.bytes(), "application/zip");
  });
}

}  // namespace navora::service
