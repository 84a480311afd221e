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
constexpr double checkInterval = 24 * 60 * 60;
// Keeps the first check out of the application's start.
constexpr double shortestDelay = 5;

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
               .prepared = std::nullopt} {}

LinuxUpdater::~LinuxUpdater() = default;

std::optional<PlatformError> LinuxUpdater::startUpdater() {
  // After the rest of the application's start.
  dependencies_.mainQueue.async(lifetime_.guard([this] { reportLaunch(); }));
  scheduleCheck();
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

void LinuxUpdater::scheduleCheck() {
  // Without an Installation, a package manager or the user is responsible for updates.
  if (!configuration_.installation || !configuration_.settings) return;
  const double sinceLastCheck = secondsSince1970(dependencies_.system.now()) -
                                numberFor(dependencies_.userDefaults, lastCheckKey, 0);
  // Clamped, so that setting the clock back delays the check by one interval at most.
  const double delay =
      std::clamp(checkInterval - std::max(sinceLastCheck, 0.0), shortestDelay, checkInterval);
  timer_ = dependencies_.mainQueue.after(std::chrono::milliseconds(static_cast<long>(delay * 1000)),
                                         [this] { checkForUpdatesInBackground(); });
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
  const Date now = dependencies_.system.now();
  dependencies_.userDefaults.setValue(lastCheckKey, secondsSince1970(now));
  scheduleCheck();
  session_ = std::make_unique<UpdateSession>(
      context_,
      AppcastSelection::Conditions{configuration_.currentVersion, configuration_.systemVersion, now,
                                   rolloutGroup(), userInitiated});
  notifyObservers();
  session_->start([this](const std::optional<PlatformError>& error) { sessionEnded(error); });
}

void LinuxUpdater::sessionEnded(const std::optional<PlatformError>& error) {
  userDriver_.dismissUpdateInstallation();
  session_.reset();
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
  const Observers present = *observers;
  for (const auto& [id, callback] : present)
    if (observers->contains(id)) callback();
}

}  // namespace navora
