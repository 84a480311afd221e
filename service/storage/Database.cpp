#include "service/storage/Database.h"

namespace navora::service {
namespace {

constexpr char schema[] = R"sql(
PRAGMA foreign_keys = ON;
CREATE TABLE IF NOT EXISTS users (id TEXT PRIMARY KEY, name TEXT NOT NULL UNIQUE);
CREATE TABLE IF NOT EXISTS sessions (
  token TEXT PRIMARY KEY,
  user_id TEXT NOT NULL REFERENCES users (id) ON DELETE CASCADE,
  expires_at INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS settings (
  user_id TEXT PRIMARY KEY REFERENCES users (id) ON DELETE CASCADE,
  value TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS captures (
  id TEXT PRIMARY KEY,
  user_id TEXT NOT NULL REFERENCES users (id) ON DELETE CASCADE,
  raw TEXT NOT NULL, provider TEXT, model TEXT, created_at INTEGER NOT NULL);
CREATE INDEX IF NOT EXISTS captures_by_user ON captures (user_id, created_at);
CREATE TABLE IF NOT EXISTS jobs (
  id TEXT PRIMARY KEY,
  capture_id TEXT NOT NULL UNIQUE REFERENCES captures (id) ON DELETE CASCADE,
  state TEXT NOT NULL, due_at INTEGER NOT NULL, title TEXT, summary TEXT);
CREATE TABLE IF NOT EXISTS idempotency_keys (
  user_id TEXT NOT NULL REFERENCES users (id) ON DELETE CASCADE,
  key TEXT NOT NULL, raw TEXT NOT NULL, capture_id TEXT NOT NULL, job_id TEXT NOT NULL,
  PRIMARY KEY (user_id, key));
CREATE TABLE IF NOT EXISTS attachments (
  id TEXT PRIMARY KEY,
  capture_id TEXT NOT NULL REFERENCES captures (id) ON DELETE CASCADE,
  name TEXT NOT NULL, content BLOB NOT NULL, created_at INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS notifications (
  sequence INTEGER PRIMARY KEY AUTOINCREMENT,
  user_id TEXT NOT NULL REFERENCES users (id) ON DELETE CASCADE,
  id TEXT NOT NULL, item TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS circles (
  id TEXT PRIMARY KEY,
  user_id TEXT NOT NULL REFERENCES users (id) ON DELETE CASCADE,
  name TEXT NOT NULL, position INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS rooms (
  id TEXT PRIMARY KEY,
  circle_id TEXT NOT NULL REFERENCES circles (id) ON DELETE CASCADE,
  name TEXT NOT NULL, position INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS messages (
  id TEXT PRIMARY KEY,
  room_id TEXT NOT NULL REFERENCES rooms (id) ON DELETE CASCADE,
  author TEXT NOT NULL, text TEXT NOT NULL, created_at INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS events (
  uid TEXT PRIMARY KEY,
  user_id TEXT NOT NULL REFERENCES users (id) ON DELETE CASCADE,
  date TEXT NOT NULL, time TEXT NOT NULL, title TEXT NOT NULL);
)sql";

}  // namespace

Statement::Statement(sqlite3* connection, std::string_view sql) : connection_(connection) {
  sqlite3_stmt* statement = nullptr;
  check(sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &statement,
                           nullptr));
  statement_.reset(statement);
}

void Statement::bind(int index, std::string_view value) {
  check(sqlite3_bind_text(statement_.get(), index, value.data(), static_cast<int>(value.size()),
                          SQLITE_TRANSIENT));
}

void Statement::bind(int index, std::int64_t value) {
  check(sqlite3_bind_int64(statement_.get(), index, value));
}

void Statement::bindNull(int index) {
  check(sqlite3_bind_null(statement_.get(), index));
}

bool Statement::step() {
  const int status = sqlite3_step(statement_.get());
  if (status == SQLITE_ROW) return true;
  if (status != SQLITE_DONE) check(status);
  return false;
}

std::string Statement::text(int column) const {
  // A NULL column yields a null pointer and a size of 0.
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
  return bytes == nullptr ? std::string() : std::string(bytes, size);
}

std::optional<std::string> Statement::optionalText(int column) const {
  if (sqlite3_column_type(statement_.get(), column) == SQLITE_NULL) return std::nullopt;
  return text(column);
}

std::int64_t Statement::integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

void Statement::check(int status) const {
  if (status != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(connection_));
}

Database::Database(const std::string& path) {
  sqlite3* connection = nullptr;
  const int status = sqlite3_open(path.c_str(), &connection);
  connection_.reset(connection);
  if (status != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(connection));
  sqlite3_busy_timeout(connection, 2000);
  execute(schema);
}

void Database::execute(const std::string& sql) {
  if (sqlite3_exec(connection_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw DatabaseError(sqlite3_errmsg(connection_.get()));
  }
}

Database::Transaction::Transaction(Database& database)
    : database_(database), lock_(database.mutex_) {
  if (database_.depth_ == 0) {
    database_.execute("BEGIN IMMEDIATE");
    database_.failed_ = false;
  }
  ++database_.depth_;
}

Database::Transaction::~Transaction() {
  --database_.depth_;
  if (committed_) return;
  database_.failed_ = true;
  if (database_.depth_ > 0) return;
  // Has no effect if SQLite has already rolled back the transaction.
  sqlite3_exec(database_.connection_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Database::Transaction::commit() {
  if (database_.depth_ == 1) {
    if (database_.failed_) throw DatabaseError("a part of the transaction was given up");
    database_.execute("COMMIT");
  }
  committed_ = true;
}

}  // namespace navora::service
