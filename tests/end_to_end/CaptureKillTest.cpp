// Kills the application at every system call that keeps its draft or talks to the service while a
// note is written and sent, and lets the next process finish: whenever it happens, the service
// holds the note once and byte for byte.
//
// By default only a few of the calls are tried. NAVORA_KILL_POINTS=all tries every one.
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include <gmock/gmock.h>

#include "end_to_end/CaptureTest.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

// Far above the number of calls, to stop a test that would never end.
constexpr int tooManyCalls = 500;
// Fewer would mean that the calls are not intercepted.
constexpr int fewCalls = 20;
// By default one call in so many is tried.
constexpr int stride = 13;

// What the service does with the note that it is sent.
struct Behaviour {
  const char* name;
  Json fault;
};

void PrintTo(const Behaviour& behaviour, std::ostream* stream) {
  *stream << behaviour.name;
}

class CaptureKillTest : public CaptureTest, public testing::WithParamInterface<Behaviour> {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.environment = {{"LD_PRELOAD", NAVORA_INTERRUPTED_CAPTURE},
                            // The library comes before the runtime of a sanitizer, if there is one.
                            {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"},
                            {"NAVORA_INTERRUPT_CONTROL", control_.string()}}};
  }

  void interruptAt(const std::string& call) const { writeFile(control_, call); }
  bool isOnDisk(const std::string& text) {
    return std::filesystem::exists(draftFile()) &&
           readFile(draftFile()).find(text) != std::string::npos;
  }
  // The application may die meanwhile.
  bool isSettled() {
    const auto button = desktop().accessibility().find({.role = "push button", .name = "Save note"},
                                                       application().pid());
    return button && button->has(AccessibleState::sensitive);
  }

  // Writes and sends a note in a process that is to be killed at the call. Returns whether it was
  // killed; it is not if the note is sent with fewer calls.
  bool writeAndSend(const std::string& begin, const std::string& end, const std::string& call) {
    const auto dead = [this] { return !application().running(); };
    openPanel();
    typeDraft(begin);
    waitUntil([&] { return isOnDisk(begin); }, "the first half is on the disk");
    interruptAt(call);
    desktop().keyboard().type(end);
    waitUntil([&] { return dead() || isOnDisk(begin + end); }, "the note is on the disk");
    if (dead()) return true;
    if (!GetParam().fault.is_null())
      serviceClient().addFault("POST", capturesPath, GetParam().fault);
    desktop().keyboard().chord(sendKey);
    const auto sent = [&] {
      if (!panel()) return !std::filesystem::exists(draftFile());
      return !posts().empty() && (GetParam().fault.contains("hang") || isSettled());
    };
    waitUntil([&] { return dead() || sent(); }, "the note is sent or the application killed");
    return dead();
  }

  // Finishes the note in a new process.
  void finish(const std::string& begin, const std::string& end) {
    interruptAt("none");
    serviceClient().clearFaults();
    if (!application().running()) application().start();
    desktop().display().waitUntilActive(application().waitForMainWindow().id);
    openPanel();
    const std::string kept = draft();
    if (!kept.empty()) {
      // What is missing was typed less than half a second before the end.
      ASSERT_TRUE(kept.starts_with(begin) && (begin + end).starts_with(kept)) << kept;
      if (isEditable()) typeDraft((begin + end).substr(kept.size()), begin + end);
      desktop().keyboard().chord(sendKey);
    } else {
      desktop().keyboard().chord("Escape");
    }
    waitUntilPanelHidden();
    ASSERT_THAT(storedNotes(), testing::Contains(begin + end).Times(1));
    waitUntil([&] { return !std::filesystem::exists(draftFile()); }, "nothing is left on the disk");
  }

  // Returns the number of calls that an uninterrupted note takes, and the number of calls tried.
  std::pair<int, int> killAtEach(const std::string& mode, int first, int step) {
    int tried = 0;
    for (int call = first; call < tooManyCalls; call += step) {
      SCOPED_TRACE(mode + " call " + std::to_string(call));
      const std::string begin = mode + std::to_string(call) + ", first half";
      const std::string end = " and the second";
      serviceClient().clearRequests();
      const bool killed = writeAndSend(begin, end, mode + " " + std::to_string(call));
      if (HasFatalFailure()) return {0, tried};
      ++tried;
      if (!killed) application().process().kill();
      finish(begin, end);
      if (HasFatalFailure()) return {0, tried};
      if (!killed) return {call - 1, tried};
    }
    ADD_FAILURE() << "The note is never sent";
    return {tooManyCalls, tried};
  }

  const TemporaryDirectory folder_{"navora-kill"};
  const std::filesystem::path control_ = folder_.path() / "control";
};

TEST_P(CaptureKillTest, StoresTheNoteOnce) {
  const char* wanted = std::getenv("NAVORA_KILL_POINTS");
  const bool all = wanted != nullptr && std::string_view(wanted) == "all";
  int tried = 0;
  for (const char* mode : {"before", "after"}) {
    const auto [calls, points] = killAtEach(mode, all ? 1 : 3, all ? 1 : stride);
    if (HasFatalFailure()) return;
    EXPECT_GE(calls, fewCalls);
    tried += points;
  }
  std::cout << "Points tried: " << tried << std::endl;
}

INSTANTIATE_TEST_SUITE_P(
    Service, CaptureKillTest,
    testing::Values(Behaviour{"Confirms", {}},
                    Behaviour{"StoresAndNeverAnswers", {{"hang", true}, {"process", true}}},
                    Behaviour{"StoresAndDropsTheConnection", {{"drop", "after"}}},
                    Behaviour{"NeverReceives", {{"drop", "before"}}}),
    [](const auto& behaviour) { return behaviour.param.name; });

}  // namespace
}  // namespace navora::driver
