#include <algorithm>
#include <charconv>
#include <chrono>
#include <utility>

#include "service/http/Routes.h"
#include "service/storage/SettingsRules.h"
#include "service/support/Encoding.h"
#include "service/support/Text.h"

namespace navora::service {
namespace {

constexpr std::size_t rawLimit = 10000;
constexpr std::size_t keyLimit = 200;
constexpr std::size_t fileNameLimit = 120;
constexpr std::chrono::seconds longPoll(20);

bool isIdempotencyKey(const std::string& key) {
  return !key.empty() && key.size() <= keyLimit &&
         std::all_of(key.begin(), key.end(),
                     [](char character) { return character > ' ' && character <= '~'; });
}

// Returns the note of a request. Replies with the error and returns nullopt if it is invalid.
std::optional<NewCapture> readCapture(ApiCall& call) {
  const auto body = call.object();
  if (!body) return std::nullopt;
  NewCapture capture;
  capture.raw = trimmed(textMember(*body, "raw").value_or(""));
  if (capture.raw.empty()) {
    call.fail(422, "empty_note", "Write something first.");
    return std::nullopt;
  }
  if (utf16Length(capture.raw) > rawLimit) {
    call.fail(422, "long_note", "A note can have at most 10 000 characters.");
    return std::nullopt;
  }
  Json choice = Json::object();
  for (const char* name : {"provider", "model"}) {
    if (body->contains(name)) choice[name] = (*body)[name];
  }
  if (const auto problem = SettingsRules::problem(choice)) {
    call.fail(422, "invalid_provider", problem->message);
    return std::nullopt;
  }
  capture.provider = textMember(*body, "provider");
  capture.model = textMember(*body, "model");
  if (call.request.has_header("Idempotency-Key")) {
    capture.idempotencyKey = call.request.get_header_value("Idempotency-Key");
    if (!isIdempotencyKey(*capture.idempotencyKey)) {
      call.fail(400, "invalid_key", "The Idempotency-Key is not valid.");
      return std::nullopt;
    }
  }
  return capture;
}

// Returns the last component of a path in the notation of any system.
std::string fileName(const std::string& given) {
  const std::string name = trimmed(given.substr(given.find_last_of("/\\") + 1));
  const bool usable =
      !name.empty() && isUtf8(name) && std::none_of(name.begin(), name.end(), [](char character) {
        return static_cast<unsigned char>(character) < 0x20;
      });
  return usable ? shortened(name, fileNameLimit) : "file";
}

void addAttachmentRoutes(Api& api, Storage& storage) {
  api.post("/api/captures/([^/]+)/attachments", [&storage](ApiCall& call) {
    if (call.request.get_header_value("Content-Type") != "application/octet-stream") {
      call.fail(415, "unsupported_type", "Send the file as application/octet-stream.");
      return;
    }
    const auto attachment = storage.captures.attach(
        call.user.id, call.captured(),
        {fileName(call.request.get_param_value("name")), call.request.body});
    if (attachment) {
      call.reply({{"attachment", *attachment}}, 201);
    } else {
      call.fail(404, "not_found", "There is no such note.");
    }
  });
  api.get("/api/attachments/([^/]+)", [&storage](ApiCall& call) {
    const auto attachment = storage.captures.attachment(call.user.id, call.captured());
    if (!attachment) {
      call.fail(404, "not_found", "There is no such file.");
      return;
    }
    // Always a download: an attached file must not run as a page of the service.
    call.response.set_header("Content-Disposition",
                             "attachment; filename*=UTF-8''" + percentEncoded(attachment->name));
    call.response.set_content(attachment->content, "application/octet-stream");
  });
}

}  // namespace

void addCaptureRoutes(Api& api, Storage& storage, Milliseconds jobDelay,
                      std::function<void()> jobAdded) {
  api.get("/api/captures", [&storage](ApiCall& call) {
    // Read before the notes, so that a change in between is reported twice rather than lost.
    const auto version = storage.captures.changes().version(call.user.id);
    call.reply({{"captures", storage.captures.list(call.user.id)}, {"version", version}});
  });
  api.get("/api/captures/changes", [&storage](ApiCall& call) {
    const std::string after = call.request.get_param_value("after");
    CaptureChanges::Version known = 0;
    const auto [end, error] = std::from_chars(after.data(), after.data() + after.size(), known);
    if (error != std::errc() || end != after.data() + after.size()) {
      call.fail(400, "invalid_version", "Name the version that you know.");
      return;
    }
    call.reply({{"version", storage.captures.changes().wait(call.user.id, known, longPoll)}});
  });
  api.post("/api/captures", [&storage, jobDelay, jobAdded](ApiCall& call) {
    const auto capture = readCapture(call);
    if (!capture) return;
    const auto accepted = storage.captures.add(call.user.id, *capture, currentTime() + jobDelay);
    if (!accepted) {
      call.fail(409, "key_reused", "This Idempotency-Key belongs to another note.");
      return;
    }
    jobAdded();
    const std::string statusUrl = "/api/jobs/" + accepted->jobId;
    call.response.set_header("Location", statusUrl);
    call.reply(
        {{"captureId", accepted->captureId}, {"jobId", accepted->jobId}, {"statusUrl", statusUrl}},
        202);
  });
  api.remove("/api/captures/([^/]+)", [&storage](ApiCall& call) {
    if (storage.captures.remove(call.user.id, call.captured())) {
      call.response.status = 204;
    } else {
      call.fail(404, "not_found", "There is no such note.");
    }
  });
  api.get("/api/jobs/([^/]+)", [&storage](ApiCall& call) {
    if (const auto job = storage.captures.job(call.user.id, call.captured())) {
      call.reply(*job);
    } else {
      call.fail(404, "not_found", "There is no such job.");
    }
  });
  addAttachmentRoutes(api, storage);
}

}  // namespace navora::service
