#include "service/testing/DriverBroker.h"

#include <utility>

namespace navora::service {
namespace {

using Clock = std::chrono::steady_clock;

// The interval at which a wait checks that the client is still connected.
constexpr std::chrono::milliseconds watchInterval(20);

// A page that navigates away sends its last reply while the next page is loading.
constexpr std::chrono::milliseconds lastAnswerGrace(1000);

}  // namespace

std::uint64_t DriverBroker::registerPage(const std::string& name) {
  std::uint64_t generation = 0;
  {
    const std::lock_guard lock(mutex_);
    generation = ++lastGeneration_;
    Channel& channel = channels_[name];
    channel.generation = generation;
    channel.present = true;
    channel.changedAt = Clock::now();
  }
  changed_.notify_all();
  return generation;
}

void DriverBroker::leave(const std::string& name, std::uint64_t generation) {
  {
    const std::lock_guard lock(mutex_);
    Channel& channel = channels_[name];
    if (channel.generation != generation) return;
    channel.present = false;
    channel.changedAt = Clock::now();
  }
  changed_.notify_all();
}

DriverBroker::Next DriverBroker::next(const std::string& name, std::uint64_t generation,
                                      std::chrono::milliseconds timeout,
                                      const StillThere& stillThere) {
  const auto end = Clock::now() + timeout;
  std::unique_lock lock(mutex_);
  Channel& channel = channels_[name];
  while (stillThere()) {
    if (channel.generation != generation || !channel.present) return Superseded{};
    for (auto& [id, job] : channel.jobs) {
      if (job.generation != 0) continue;
      job.generation = generation;
      return Script{id, job.script};
    }
    if (Clock::now() >= end) break;
    changed_.wait_for(lock, watchInterval);
  }
  return Nothing{};
}

void DriverBroker::answer(const std::string& name, std::uint64_t id, Json answer) {
  {
    const std::lock_guard lock(mutex_);
    auto& jobs = channels_[name].jobs;
    const auto job = jobs.find(id);
    if (job == jobs.end()) return;
    job->second.answer = std::move(answer);
  }
  changed_.notify_all();
}

bool DriverBroker::lost(const Channel& channel, const Job& job) {
  const bool unloaded =
      job.generation != 0 && (job.generation != channel.generation || !channel.present);
  return unloaded && Clock::now() >= channel.changedAt + lastAnswerGrace;
}

std::optional<Json> DriverBroker::evaluate(const std::string& name, const std::string& script,
                                           std::chrono::milliseconds timeout,
                                           const StillThere& stillThere) {
  const auto end = Clock::now() + timeout;
  std::unique_lock lock(mutex_);
  Channel& channel = channels_[name];
  const std::uint64_t id = ++lastId_;
  Job& job = channel.jobs[id];
  job.script = script;
  changed_.notify_all();
  while (!job.answer && !lost(channel, job) && Clock::now() < end && stillThere()) {
    changed_.wait_for(lock, watchInterval);
  }
  std::optional<Json> answer = std::move(job.answer);
  if (!answer && lost(channel, job)) answer = Json{{"ok", false}, {"error", "the page went away"}};
  channel.jobs.erase(id);
  return answer;
}

}  // namespace navora::service
