#include "hosts/linux/updates/LinuxUpdater.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <utility>

#include "hosts/linux/installation/UpdateError.h"

namespace navora {
namespace {

constexpr const char* lastCheckKey = "navora.updater.lastCheck";
constexpr const char* rolloutGroupKey = "navora.updater.rolloutGroup";
// In seconds.
constexpr double hour = 60 * 60;
constexpr double checkInterval = 24 * hour;
// Corrections of the clock by less than this are of no consequence.
constexpr double clockTolerance = hour;
// A failed check is repeated after the first of these, then after twice as long each time, up to
// the second.
constexpr double shortestRetry = 5 * 60;
constexpr double longestRetry = 4 * hour;
// Keeps the check out of the application's start, and leaves the network time to return after
// sleep.
constexpr double shortestDelay = 5;
// The queue's timers stand still while the computer sleeps, and know nothing of a change of the
// clock. Where waking is not reported, this is how late either is noticed.
constexpr double longestTimer = hour;

double retryDelay(int failures) {
  double delay = shortestRetry;
  for (int failure = 1; failure < failures && delay < longestRetry; ++failure)
    delay *= 2;
  return std::min(delay, longestRetry);
}

double numberFor(const UserDefaults& userDefaults, const char* key, double otherwise) {
  const auto value = userDefaults.value(key);
  return value && value->is_number() ? value->get<double>() : otherwise;
}

}  // namespace

// Keeps a callback in the list of observers until it is destroyed.
class LinuxUpdater::Observation final : public ObserverToken {
 public:
  Observation(const std::shared_ptr<Observers>& observers, int id, std::function<void()> callback)
      : observers_(observers), id_(id) {
    observers->emplace(id, std::move(callback));
  }
  ~Observation() override {
    if (const auto observers = observers_.lock()) observers->erase(id_);
  }
  Observation(const Observation&) = delete;
  Observation& operator=(const Observation&) = delete;

 private:
  std::weak_ptr<Observers> observers_;
  int id_;
};

LinuxUpdater::LinuxUpdater(Configuration configuration, const Dependencies& dependencies,
                           UpdaterUserDriver& userDriver, UpdaterDelegate& delegate)
    : configuration_(std::move(configuration)),
      dependencies_(dependencies),
      userDriver_(userDriver),
      delegate_(delegate),
      context_{.settings = configuration_.settings,
               .installation = configuration_.installation,
               .userDriver = userDriver,
               .mainQueue = dependencies.mainQueue,
               .backgroundQueue = dependencies.backgroundQueue,
               .terminate = configuration_.terminate,
               .feedRead = [this] { feedRead(); },
               .prepared = std::nullopt} {}

LinuxUpdater::~LinuxUpdater() = default;

std::optional<PlatformError> LinuxUpdater::startUpdater() {
  // After the rest of the application's start.
  dependencies_.mainQueue.async(lifetime_.guard([this] { reportLaunch(); }));
  scheduleCheck();
  wakeObservation_ = dependencies_.system.observeWake([this] { scheduleCheck(); });
  return std::nullopt;
}

void LinuxUpdater::reportLaunch() {
  // An interrupted update leaves its folder behind; an update in progress holds the lock on its
  // own.
  if (configuration_.installation) UpdateFolder::removeLeftovers(*configuration_.installation);
  const bool followsUpdate = configuration_.launch.followsUpdate();
  configuration_.launch.confirm();
  if (followsUpdate) {
    userDriver_.showUpdateInstalledAndRelaunched(true, [] {});
  } else if (configuration_.launch.followsFailedUpdate()) {
    userDriver_.showUpdaterError(
        updateError(UpdateStage::relaunch, "The new version does not start"), [] {});
    userDriver_.dismissUpdateInstallation();
  }
}

double LinuxUpdater::secondsUntilCheck() const {
  const double now = secondsSince1970(dependencies_.system.now());
  const double due = retry_
                         ? secondsSince1970(*retry_)
                         : numberFor(dependencies_.userDefaults, lastCheckKey, 0) + checkInterval;
  const double remaining = due - now;
  // A time further ahead than any wait, or no number, has been damaged, or the clock was set back.
  return remaining <= checkInterval + clockTolerance ? remaining : 0;
}

void LinuxUpdater::scheduleCheck() {
  // Without an Installation, a package manager or the user is responsible for updates.
  if (!configuration_.installation || !configuration_.settings) return;
  const double delay =
      session_ ? longestTimer : std::clamp(secondsUntilCheck(), shortestDelay, longestTimer);
  // Rounded up, because a timer that fires a fraction early has to be set again.
  timer_ = dependencies_.mainQueue.after(
      std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(delay)),
      [this] { timerFired(); });
}

void LinuxUpdater::timerFired() {
  if (!session_ && secondsUntilCheck() <= 0) {
    checkForUpdatesInBackground();
  } else {
    scheduleCheck();
  }
}

void LinuxUpdater::checkForUpdates() {
  check(true);
}

void LinuxUpdater::checkForUpdatesInBackground() {
  check(false);
}

void LinuxUpdater::check(bool userInitiated) {
  if (session_) {
    if (userInitiated) userDriver_.showUpdateInFocus();
    return;
  }
  feedWasRead_ = false;
  session_ = std::make_unique<UpdateSession>(
      context_,
      AppcastSelection::Conditions{configuration_.currentVersion, configuration_.systemVersion,
                                   dependencies_.system.now(), rolloutGroup(), userInitiated});
  scheduleCheck();
  notifyObservers();
  session_->start([this](const std::optional<PlatformError>& error) { sessionEnded(error); });
}

void LinuxUpdater::feedRead() {
  feedWasRead_ = true;
  failures_ = 0;
  retry_.reset();
  dependencies_.userDefaults.setValue(lastCheckKey, secondsSince1970(dependencies_.system.now()));
}

void LinuxUpdater::sessionEnded(const std::optional<PlatformError>& error) {
  if (feedWasRead_) {
    // Counted from the user's answer, which may come days after the check, so that the version that
    // was declined is not offered again at once.
    feedRead();
  } else {
    const double delay = retryDelay(++failures_);
    retry_ = dependencies_.system.now() + std::chrono::duration<double>(delay);
  }
  userDriver_.dismissUpdateInstallation();
  session_.reset();
  scheduleCheck();
  notifyObservers();
  delegate_.didFinishUpdateCycle(error);
}

// Returns the stored group, or chooses and stores one at random.
int LinuxUpdater::rolloutGroup() {
  const double stored = numberFor(dependencies_.userDefaults, rolloutGroupKey, -1);
  if (stored >= 0 && stored < AppcastSelection::rolloutGroups) return static_cast<int>(stored);
  std::random_device entropy;
  const int chosen = std::uniform_int_distribution(0, AppcastSelection::rolloutGroups - 1)(entropy);
  dependencies_.userDefaults.setValue(rolloutGroupKey, chosen);
  return chosen;
}

std::unique_ptr<ObserverToken> LinuxUpdater::observeCanCheckForUpdates(
    std::function<void()> callback) {
  return std::make_unique<Observation>(observers_, ++lastObserver_, std::move(callback));
}

std::unique_ptr<ObserverToken> LinuxUpdater::observeSessionInProgress(
    std::function<void()> callback) {
  return std::make_unique<Observation>(observers_, ++lastObserver_, std::move(callback));
}

void LinuxUpdater::notifyObservers() const {
  // Copies: a callback may destroy any observer, its own included.
  const auto observers = observers_;
  const Observers present(observers->begin(), observers->end());
  for (const auto& [id, callback] : present)
    if (observers->contains(id)) callback();
}

}  // namespace navora
