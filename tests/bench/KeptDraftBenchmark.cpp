// What keeping the capture panel's draft costs: the main thread at a key and at a write, and the
// disk before a note is posted.
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "capture/KeptDraft.h"
#include "fakes/FakePlatform.h"
#include "platform/PosixPrivateFile.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

// A note of the largest length that can be sent, with the attempt to send it.
CaptureDraft largestDraft() {
  const std::string text(10'000, 'x');
  const std::string uuid = "00000000-0000-4000-8000-ABCDEF000001";
  return {text, CaptureAttempt{text, "mac-" + uuid, "user-1", R"({"raw":")" + text + "\"}", uuid},
          true};
}

class DraftOnDisk {
 public:
  DraftOnDisk()
      : kept_({.backgroundQueue = platform_.backgroundQueue(),
               .mainQueue = platform_.mainQueue(),
               .system = platform_.system(),
               .file = std::make_shared<PosixPrivateFile>(folder_.path() / "draft.json"),
               .current = [this] { return draft_; }}) {
    kept_.restore();
  }

  void change() { draft_.text.back() = draft_.text.back() == 'x' ? 'y' : 'x'; }
  KeptDraft& kept() { return kept_; }
  FakeBackgroundQueue& background() { return platform_.backgroundQueue(); }

 private:
  const TemporaryDirectory folder_{"navora-draft-benchmark"};
  FakePlatform platform_;
  CaptureDraft draft_ = largestDraft();
  KeptDraft kept_;
};

void announceAKey(benchmark::State& state) {
  DraftOnDisk draft;
  for (auto _ : state)
    draft.kept().draftDidChange();
}
BENCHMARK(announceAKey);

// The main thread's part of a write, four times a second at most.
void startAWrite(benchmark::State& state) {
  DraftOnDisk draft;
  for (auto _ : state) {
    draft.change();
    draft.kept().store();
    state.PauseTiming();
    draft.background().finishAll();
    state.ResumeTiming();
  }
}
BENCHMARK(startAWrite)->Unit(benchmark::kMicrosecond)->Iterations(300);

// The whole write, as a submission waits for it.
void writeToTheDisk(benchmark::State& state) {
  const TemporaryDirectory folder{"navora-draft-benchmark"};
  PosixPrivateFile file(folder.path() / "draft.json");
  const CaptureDraft draft = largestDraft();
  for (auto _ : state) {
    if (file.write(draft.serialized())) state.SkipWithError("The draft cannot be written");
  }
}
BENCHMARK(writeToTheDisk)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(50)
    ->Repetitions(9)
    ->ReportAggregatesOnly();

}  // namespace
}  // namespace navora
