#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <sqlite3.h>

namespace navora::service {

// Thrown when SQLite rejects a statement or fails to execute it. Not part of any interface: the
// HTTP server replies with 500.
class DatabaseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A prepared statement with its values bound, to be stepped through once.
class Statement {
 public:
  Statement(sqlite3* connection, std::string_view sql);

  void bind(int index, std::string_view value);
  void bind(int index, std::int64_t value);
  // A template, so that string literals are not ambiguous between the overloads.
  template <std::same_as<std::optional<std::string>> Value>
  void bind(int index, const Value& value) {
    value ? bind(index, std::string_view(*value)) : bindNull(index);
  }

  // Moves to the next row; returns false at the end.
  bool step();

  std::string text(int column) const;
  std::optional<std::string> optionalText(int column) const;
  std::int64_t integer(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  void bindNull(int index);
  void check(int status) const;

  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// The SQLite connection that all stores share. Used only within a `Transaction`, which excludes
// other threads.
class Database {
 public:
  // Opens or creates the file at `path`; ":memory:" stores everything in memory.
  explicit Database(const std::string& path);

  // Runs a script of statements that return no rows.
  void execute(const std::string& sql);

  // Returns a statement with `values` bound to its parameters in order.
  template <typename... Values>
  Statement prepare(std::string_view sql, const Values&... values) {
    Statement statement(connection_.get(), sql);
    int index = 0;
    (statement.bind(++index, values), ...);
    return statement;
  }

  // Runs one statement that returns no rows; returns the number of rows that it changed.
  template <typename... Values>
  int run(std::string_view sql, const Values&... values) {
    Statement statement = prepare(sql, values...);
    statement.step();
    return sqlite3_changes(connection_.get());
  }

  // Excludes other threads during its lifetime. Transactions may nest on one thread; the outermost
  // one rolls everything back unless every level has been committed.
  class Transaction {
   public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // The transaction must not be used afterwards.
    void commit();

   private:
    Database& database_;
    std::unique_lock<std::recursive_mutex> lock_;
    bool committed_ = false;
  };

 private:
  struct Close {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
  };

  std::unique_ptr<sqlite3, Close> connection_;
  std::recursive_mutex mutex_;
  int depth_ = 0;
  bool failed_ = false;
};

}  // namespace navora::service
