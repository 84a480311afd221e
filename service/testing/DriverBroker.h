#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

#include "service/support/Json.h"

namespace navora::service {

/// Brings scripts of a test to the page that runs under a name, and the page's answers back.
///
/// Several pages may use one name one after the other. Each registers when it is loaded and gets a
/// generation; the newest one gets the scripts, all older ones are told to stop asking.
class DriverBroker {
 public:
  using StillThere = std::function<bool()>;

  struct Script {
    std::uint64_t id;
    std::string text;
  };
  /// Nothing came in time; the page may ask again.
  struct Nothing {};
  /// The page has a successor, or has said good-bye.
  struct Superseded {};
  using Next = std::variant<Script, Nothing, Superseded>;

  std::uint64_t registerPage(const std::string& name);
  void leave(const std::string& name, std::uint64_t generation);

  /// The next script for a page, waited for as long as `stillThere` says that the page listens.
  Next next(const std::string& name, std::uint64_t generation, std::chrono::milliseconds timeout,
            const StillThere& stillThere);

  /// Takes a page's answer; one that nobody waits for any more is dropped.
  void answer(const std::string& name, std::uint64_t id, Json answer);

  /// Runs a script in the page and returns its answer, or nothing after the time-out. When no page
  /// runs under the name yet, the time-out includes waiting for one. A page that goes away with
  /// the script in hand gives {"ok": false, "error": "the page went away"}.
  std::optional<Json> evaluate(const std::string& name, const std::string& script,
                               std::chrono::milliseconds timeout, const StillThere& stillThere);

 private:
  struct Job {
    std::string script;
    std::uint64_t generation = 0;  ///< Of the page that took it; 0 while it waits.
    std::optional<Json> answer;
  };
  struct Channel {
    std::uint64_t generation = 0;  ///< Of the newest page.
    bool present = false;          ///< Whether that page is still there.
    std::chrono::steady_clock::time_point changedAt{};
    std::map<std::uint64_t, Job> jobs;  ///< By id, which grows: the first waiting one is next.
  };

  static bool lost(const Channel& channel, const Job& job);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::string, Channel> channels_;
  std::uint64_t lastGeneration_ = 0;
  std::uint64_t lastId_ = 0;
};

}  // namespace navora::service
