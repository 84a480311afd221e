#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "capture/CaptureDraft.h"
#include "platform/BackgroundQueue.h"
#include "platform/MainQueue.h"
#include "platform/ObserverToken.h"
#include "platform/PlatformError.h"
#include "platform/PrivateFile.h"
#include "platform/System.h"
#include "support/CallbackAwaiter.h"
#include "support/Lifetime.h"
#include "support/Task.h"

namespace navora {

// Keeps the capture panel's draft in a file, so that it survives the process. The file is written
// in the background and deleted when the draft is empty. A failure is logged; the draft then lasts
// as long as the process.
class KeptDraft {
 public:
  // The references must outlive this object.
  struct Dependencies {
    BackgroundQueue& backgroundQueue;
    MainQueue& mainQueue;
    const System& system;
    std::shared_ptr<PrivateFile> file;
    // Returns the current draft.
    std::function<CaptureDraft()> current;
  };

  explicit KeptDraft(Dependencies dependencies);

  // Reads the draft of an earlier process, once, before any other function. A file that cannot be
  // read is set aside, and the draft is empty.
  CaptureDraft restore();

  // Schedules a write of the changed draft, which is on the disk within half a second.
  void draftDidChange();
  // Starts writing the draft at once.
  void store();
  // Writes the draft and waits until it is on the disk, could not be written, or a time limit has
  // passed.
  Task<> storeAndWait();
  // Writes the draft and blocks until it is on the disk or could not be written.
  void flush();

 private:
  using Outcome = std::optional<PlatformError>;

  void storeWith(Callback<void> completion);
  void setAside(const std::string& problem);
  void report(const Outcome& failure);
  void log(const std::string& line) const;

  const Dependencies dependencies_;
  std::unique_ptr<ObserverToken> timer_;
  // The draft that the file will hold once all writes have finished, unless the last one fails.
  std::optional<CaptureDraft> written_;
  // The outcome of the last write, which the background thread sets; null before the first one.
  std::shared_ptr<Outcome> lastWrite_;
  // The last failure reported, so that the log does not repeat it at every key press.
  std::string reported_;
  bool writable_ = true;
  Lifetime lifetime_;
};

}  // namespace navora
