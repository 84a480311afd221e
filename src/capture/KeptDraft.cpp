#include "capture/KeptDraft.h"

#include <chrono>
#include <utility>

#include "platform/TimeLimit.h"

namespace navora {
namespace {

// Leaves time for the write within the half second that draftDidChange() promises.
constexpr std::chrono::milliseconds delay{250};
// A disk that takes longer must not keep a note from being sent.
constexpr std::chrono::seconds longestWait{2};

}  // namespace

KeptDraft::KeptDraft(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

CaptureDraft KeptDraft::restore() {
  written_ = CaptureDraft();
  const auto content = dependencies_.file->read();
  if (!content) {
    setAside(content.error().localizedDescription);
    return {};
  }
  if (!*content) {
    // Deletes what an earlier process left behind if it was killed while it wrote.
    report(dependencies_.file->remove());
    return {};
  }
  auto draft = CaptureDraft::parse(**content);
  if (!draft) {
    setAside("damaged");
    return {};
  }
  written_ = *draft;
  return *std::move(draft);
}

void KeptDraft::setAside(const std::string& problem) {
  const auto name = dependencies_.file->setAside();
  // A file that cannot be renamed is not overwritten either, because it may contain a draft.
  writable_ = name.hasValue();
  log(problem + (name ? "; the file is kept as " + *name : "; the file is left as it is"));
}

void KeptDraft::draftDidChange() {
  if (!timer_) timer_ = dependencies_.mainQueue.after(delay, [this] { store(); });
}

void KeptDraft::store() {
  storeWith([] {});
}

Task<> KeptDraft::storeAndWait() {
  co_await awaitWithin<bool>(dependencies_.mainQueue, longestWait, [this](Callback<bool> done) {
    storeWith([done = std::move(done)] { done(true); });
  });
}

void KeptDraft::flush() {
  store();
  dependencies_.backgroundQueue.drain();
  // The main loop may have ended, so that no completion reports it.
  if (lastWrite_) report(*lastWrite_);
}

void KeptDraft::storeWith(Callback<void> completion) {
  timer_.reset();
  if (!writable_) return completion();
  CaptureDraft draft = dependencies_.current();
  std::shared_ptr<Outcome> write;
  std::function<void()> work = [] {};
  if (written_ != draft) {
    written_ = draft;
    write = std::make_shared<Outcome>();
    lastWrite_ = write;
    work = [file = dependencies_.file, draft = std::move(draft), write] {
      *write = draft.isEmpty() ? file->remove() : file->write(draft.serialized());
    };
  }
  // Queued even if there is nothing to write, so that `completion` waits for earlier writes.
  dependencies_.backgroundQueue.run(
      std::move(work), lifetime_.guard([this, write, completion = std::move(completion)] {
        if (write) report(*write);
        completion();
      }));
}

void KeptDraft::report(const Outcome& failure) {
  const std::string problem = failure ? failure->localizedDescription : std::string();
  if (failure) written_.reset();
  if (failure && problem != reported_) log("it cannot be kept: " + problem);
  reported_ = problem;
}

void KeptDraft::log(const std::string& line) const {
  dependencies_.system.log("Navora: draft of the quick note: " + line);
}

}  // namespace navora
