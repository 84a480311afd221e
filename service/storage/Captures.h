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

// The notes ("captures"), the background job of each, and their attached files.
class Captures {
 public:
  Captures(Database& database, Notifications& notifications)
      : database_(database), notifications_(notifications) {}

  // Stores a note and its job, which is due at `dueAt`. A repeated key with the same note returns
  // the existing capture and job; with another text, provider or model it returns nullopt.
  std::optional<AcceptedCapture> add(const std::string& userId, const NewCapture& capture,
                                     Milliseconds dueAt);

  // Returns all notes, newest first, as JSON objects with the state of their job and their
  // attachments.
  Json list(const std::string& userId);

  // Returns the idempotency keys by note id; notes sent without a key are missing.
  std::map<std::string, std::string> idempotencyKeys(const std::string& userId);

  // Returns false if the user has no such note.
  bool remove(const std::string& userId, const std::string& id);

  std::optional<Json> job(const std::string& userId, const std::string& id);

  // Returns the new attachment, or nullopt if the user has no such note.
  std::optional<Json> attach(const std::string& userId, const std::string& captureId,
                             const Attachment& attachment);
  std::optional<Attachment> attachment(const std::string& userId, const std::string& id);

  // Finishes every job that is due and raises its notification, in one transaction. Returns the
  // time at which the next job is due, if there is one.
  std::optional<Milliseconds> finishDueJobs(Milliseconds now);

  // Reports every change of a note, its job or its attachments.
  CaptureChanges& changes() { return changes_; }

 private:
  Json attachments(const std::string& captureId);
  // Returns the note's owner.
  std::string finishJob(const std::string& jobId);

  Database& database_;
  Notifications& notifications_;
  CaptureChanges changes_;
};

}  // namespace navora::service
