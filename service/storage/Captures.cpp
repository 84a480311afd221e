#include "service/storage/Captures.h"

#include <set>

#include "service/jobs/NoteDigest.h"
#include "service/support/Identifiers.h"

namespace navora::service {
namespace {

Json optionalJson(const std::optional<std::string>& text) {
  return text ? Json(*text) : Json();
}

}  // namespace

std::optional<AcceptedCapture> Captures::add(const std::string& userId, const NewCapture& capture,
                                             Milliseconds dueAt) {
  Database::Transaction transaction(database_);
  if (capture.idempotencyKey) {
    Statement earlier = database_.prepare(
        "SELECT idempotency_keys.raw, capture_id, job_id, "
        "captures.id IS NULL OR (provider IS ? AND model IS ?) "
        "FROM idempotency_keys LEFT JOIN captures ON captures.id = capture_id "
        "WHERE idempotency_keys.user_id = ? AND key = ?",
        capture.provider, capture.model, userId, *capture.idempotencyKey);
    if (earlier.step()) {
      transaction.commit();
      if (earlier.text(0) != capture.raw || earlier.integer(3) == 0) return std::nullopt;
      return AcceptedCapture{earlier.text(1), earlier.text(2)};
    }
  }
  AcceptedCapture accepted{randomUuid(), randomUuid()};
  database_.run(
      "INSERT INTO captures (id, user_id, raw, provider, model, created_at) "
      "VALUES (?, ?, ?, ?, ?, ?)",
      accepted.captureId, userId, capture.raw, capture.provider, capture.model, currentTime());
  database_.run("INSERT INTO jobs (id, capture_id, state, due_at) VALUES (?, ?, 'running', ?)",
                accepted.jobId, accepted.captureId, dueAt);
  if (capture.idempotencyKey) {
    database_.run(
        "INSERT INTO idempotency_keys (user_id, key, raw, capture_id, job_id) "
        "VALUES (?, ?, ?, ?, ?)",
        userId, *capture.idempotencyKey, capture.raw, accepted.captureId, accepted.jobId);
  }
  transaction.commit();
  changes_.raise(userId);
  return accepted;
}

Json Captures::list(const std::string& userId) {
  Database::Transaction transaction(database_);
  Json captures = Json::array();
  Statement row = database_.prepare(
      "SELECT captures.id, raw, provider, model, created_at, jobs.id, state, title, summary "
      "FROM captures JOIN jobs ON jobs.capture_id = captures.id WHERE user_id = ? "
      "ORDER BY created_at DESC, captures.rowid DESC",
      userId);
  while (row.step()) {
    captures.push_back({{"id", row.text(0)},
                        {"raw", row.text(1)},
                        {"provider", optionalJson(row.optionalText(2))},
                        {"model", optionalJson(row.optionalText(3))},
                        {"createdAt", isoTime(row.integer(4))},
                        {"jobId", row.text(5)},
                        {"state", row.text(6)},
                        {"title", optionalJson(row.optionalText(7))},
                        {"summary", optionalJson(row.optionalText(8))},
                        {"attachments", attachments(row.text(0))}});
  }
  transaction.commit();
  return captures;
}

Json Captures::attachments(const std::string& captureId) {
  Json found = Json::array();
  Statement row = database_.prepare(
      "SELECT id, name, length(content) FROM attachments WHERE capture_id = ? ORDER BY created_at",
      captureId);
  while (row.step()) {
    found.push_back({{"id", row.text(0)}, {"name", row.text(1)}, {"size", row.integer(2)}});
  }
  return found;
}

std::map<std::string, std::string> Captures::idempotencyKeys(const std::string& userId) {
  Database::Transaction transaction(database_);
  std::map<std::string, std::string> keys;
  Statement row =
      database_.prepare("SELECT capture_id, key FROM idempotency_keys WHERE user_id = ?", userId);
  while (row.step())
    keys[row.text(0)] = row.text(1);
  transaction.commit();
  return keys;
}

bool Captures::remove(const std::string& userId, const std::string& id) {
  Database::Transaction transaction(database_);
  const bool removed =
      database_.run("DELETE FROM captures WHERE id = ? AND user_id = ?", id, userId) > 0;
  if (removed) notifications_.resolveCapture(userId, id);
  transaction.commit();
  if (removed) changes_.raise(userId);
  return removed;
}

std::optional<Json> Captures::job(const std::string& userId, const std::string& id) {
  Database::Transaction transaction(database_);
  Statement row = database_.prepare(
      "SELECT captures.id, state, title, summary FROM jobs "
      "JOIN captures ON captures.id = jobs.capture_id WHERE jobs.id = ? AND user_id = ?",
      id, userId);
  std::optional<Json> found;
  if (row.step()) {
    found = Json{{"jobId", id},
                 {"captureId", row.text(0)},
                 {"state", row.text(1)},
                 {"title", optionalJson(row.optionalText(2))},
                 {"summary", optionalJson(row.optionalText(3))}};
  }
  transaction.commit();
  return found;
}

std::optional<Json> Captures::attach(const std::string& userId, const std::string& captureId,
                                     const Attachment& attachment) {
  Database::Transaction transaction(database_);
  Statement owner =
      database_.prepare("SELECT 1 FROM captures WHERE id = ? AND user_id = ?", captureId, userId);
  std::optional<Json> added;
  if (owner.step()) {
    const std::string id = randomUuid();
    database_.run(
        "INSERT INTO attachments (id, capture_id, name, content, created_at) "
        "VALUES (?, ?, ?, CAST(? AS BLOB), ?)",
        id, captureId, attachment.name, attachment.content, currentTime());
    added = Json{{"id", id}, {"name", attachment.name}, {"size", attachment.content.size()}};
  }
  transaction.commit();
  if (added) changes_.raise(userId);
  return added;
}

std::optional<Attachment> Captures::attachment(const std::string& userId, const std::string& id) {
  Database::Transaction transaction(database_);
  Statement row = database_.prepare(
      "SELECT name, content FROM attachments JOIN captures ON captures.id = capture_id "
      "WHERE attachments.id = ? AND user_id = ?",
      id, userId);
  std::optional<Attachment> found;
  if (row.step()) found = Attachment{row.text(0), row.text(1)};
  transaction.commit();
  return found;
}

std::optional<Milliseconds> Captures::finishDueJobs(Milliseconds now) {
  Database::Transaction transaction(database_);
  std::vector<std::string> due;
  Statement row = database_.prepare(
      "SELECT id FROM jobs WHERE state = 'running' AND due_at <= ? ORDER BY due_at, rowid", now);
  while (row.step())
    due.push_back(row.text(0));
  std::set<std::string> users;
  for (const std::string& jobId : due)
    users.insert(finishJob(jobId));

  std::optional<Milliseconds> next;
  Statement waiting =
      database_.prepare("SELECT due_at FROM jobs WHERE state = 'running' ORDER BY due_at LIMIT 1");
  if (waiting.step()) next = waiting.integer(0);
  transaction.commit();
  for (const std::string& userId : users)
    changes_.raise(userId);
  return next;
}

std::string Captures::finishJob(const std::string& jobId) {
  Statement row = database_.prepare(
      "SELECT captures.id, user_id, raw FROM jobs JOIN captures ON captures.id = capture_id "
      "WHERE jobs.id = ?",
      jobId);
  row.step();
  const NoteDigest digest = NoteDigest::of(row.text(2));
  database_.run("UPDATE jobs SET state = 'done', title = ?, summary = ? WHERE id = ?", digest.title,
                digest.summary, jobId);
  notifications_.add(row.text(1), {{"kind", "capture_ready"},
                                   {"captureId", row.text(0)},
                                   {"lead", "Your note is ready:"},
                                   {"text", digest.title},
                                   {"data", {{"pushTitle", "Note processed"}}}});
  return row.text(1);
}

}  // namespace navora::service
