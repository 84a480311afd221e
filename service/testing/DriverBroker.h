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

// Passes a test's scripts to the page with a given name, and the page's replies back.
//
// Pages may use one name in succession. Each registers when it is loaded and gets a generation; the
// newest one gets the scripts, and older ones are told to stop asking.
class DriverBroker {
 public:
  using StillThere = std::function<bool()>;

  struct Script {
    std::uint64_t id;
    std::string text;
  };
  // No script came in time; the page may ask again.
  struct Nothing {};
  // A newer page has replaced this one, or it has announced its end.
  struct Superseded {};
  using Next = std::variant<Script, Nothing, Superseded>;

  std::uint64_t registerPage(const std::string& name);
  void leave(const std::string& name, std::uint64_t generation);

  // Waits for the next script for a page while `stillThere` returns true.
  Next next(const std::string& name, std::uint64_t generation, std::chrono::milliseconds timeout,
            const StillThere& stillThere);

  // Accepts a page's reply; drops it if its script has timed out.
  void answer(const std::string& name, std::uint64_t id, Json answer);

  // Runs a script in the page and returns its reply, or nullopt after the time-out, which includes
  // waiting for a page with this name. A page that is unloaded while it runs the script yields
  // {"ok": false, "error": "the page went away"}.
  std::optional<Json> evaluate(const std::string& name, const std::string& script,
                               std::chrono::milliseconds timeout, const StillThere& stillThere);

 private:
  struct Job {
    std::string script;
    std::uint64_t generation = 0;  // The page that runs it; 0 while it is queued.
    std::optional<Json> answer;
  };
  struct Channel {
    std::uint64_t generation = 0;  // The newest page.
    bool present = false;          // Whether that page is still loaded.
    std::chrono::steady_clock::time_point changedAt{};
    std::map<std::uint64_t, Job> jobs;  // By ascending id; the first queued one is next.
  };

  static bool lost(const Channel& channel, const Job& job);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::string, Channel> channels_;
  std::uint64_t lastGeneration_ = 0;
  std::uint64_t lastId_ = 0;
};

}  // namespace navora::service
