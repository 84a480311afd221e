#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "service/storage/CaptureChanges.h"
#include "service/storage/Database.h"
#include "service/storage/Notifications.h"
#include "service/support/Json.h"
#include "service/support/Time.h"

namespace navora::service {

struct NewCapture {
  std::string raw;
  std::optional<std::string> provider;
  std::optional<std::string> model;
  std::optional<std::string> idempotencyKey;
};

struct AcceptedCapture {
  std::string captureId;
  std::string jobId;
};

struct Attachment {
  std::string name;
  std::string content;
};

/// The notes ("captures"), the background job of each, and the files attached to them.
class Captures {
 public:
  Captures(Database& database, Notifications& notifications)
      : database_(database), notifications_(notifications) {}

  /// Stores a note and its job, which is due at `dueAt`. The same key with the same note gives the
  /// same capture and job again; the same key with another text, provider or model gives nothing.
  std::optional<AcceptedCapture> add(const std::string& userId, const NewCapture& capture,
                                     Milliseconds dueAt);

  /// All notes, newest first, as JSON objects with their job's state and their attachments.
  Json list(const std::string& userId);

  /// From the id of a note to the idempotency key that it came with, where there was one.
  std::map<std::string, std::string> idempotencyKeys(const std::string& userId);

  /// False when the user has no such note.
  bool remove(const std::string& userId, const std::string& id);

  std::optional<Json> job(const std::string& userId, const std::string& id);

  /// The new attachment, or nothing when the user has no such note.
  std::optional<Json> attach(const std::string& userId, const std::string& captureId,
                             const Attachment& attachment);
  std::optional<Attachment> attachment(const std::string& userId, const std::string& id);

  /// Finishes every job that is due and raises its notification, in one transaction.
  /// Returns when the next job is due, if one is waiting.
  std::optional<Milliseconds> finishDueJobs(Milliseconds now);

  /// Raised after every change of a note, its job or its attachments.
  CaptureChanges& changes() { return changes_; }

 private:
  Json attachments(const std::string& captureId);
  /// Returns whose note it was.
  std::string finishJob(const std::string& jobId);

  Database& database_;
  Notifications& notifications_;
  CaptureChanges changes_;
};

}  // namespace navora::service
