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

/// A statement that SQLite refused or could not carry out. Thrown inside the service only; a
/// request that meets it is answered 500.
class DatabaseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One prepared statement with its values bound, to be stepped through once.
class Statement {
 public:
  Statement(sqlite3* connection, std::string_view sql);

  void bind(int index, std::string_view value);
  void bind(int index, std::int64_t value);
  /// A template, so that plain texts do not have two equally good overloads to choose from.
  template <std::same_as<std::optional<std::string>> Value>
  void bind(int index, const Value& value) {
    value ? bind(index, std::string_view(*value)) : bindNull(index);
  }

  /// Moves to the next row; false when there is none.
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

/// The SQLite connection that all stores share. Every use happens inside a `Transaction`, which
/// also keeps the other threads out.
class Database {
 public:
  /// Opens or creates the file at `path`; ":memory:" keeps everything in memory.
  explicit Database(const std::string& path);

  /// Runs a script of statements that return no rows.
  void execute(const std::string& sql);

  /// A statement with `values` bound to its parameters in order.
  template <typename... Values>
  Statement prepare(std::string_view sql, const Values&... values) {
    Statement statement(connection_.get(), sql);
    int index = 0;
    (statement.bind(++index, values), ...);
    return statement;
  }

  /// Runs one statement that returns no rows and reports how many rows it changed.
  template <typename... Values>
  int run(std::string_view sql, const Values&... values) {
    Statement statement = prepare(sql, values...);
    statement.step();
    return sqlite3_changes(connection_.get());
  }

  /// Excludes other threads for its lifetime. Transactions may nest on one thread; the outermost
  /// one decides, and undoes everything unless every level was committed before its end.
  class Transaction {
   public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// The last use of the transaction.
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
