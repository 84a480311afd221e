#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "fakes/EventLog.h"
#include "platform/HotKeys.h"

namespace navora {

// A keyboard whose keys the test presses.
class FakeHotKeys final : public HotKeys {
 public:
  explicit FakeHotKeys(EventLog& log) : log_(log) {}

  Status installStatus = 0;
  Status registerStatus = 0;

  const std::optional<HotKey>& registered() const { return registered_; }
  bool hasEventHandler() const { return static_cast<bool>(onPressed_); }
  bool hasMonitor() const { return monitor_ != nullptr && *monitor_; }

  // Presses the registered combination, whichever application has the focus.
  void press() const { onPressed_(); }
  // Presses a key in one of the application's own windows. Returns whether the monitor consumed it.
  bool pressLocally(const KeyEvent& event) const { return hasMonitor() && (*monitor_)(event); }

  Status installEventHandler(std::function<void()> onPressed) override {
    log_.record("hotKeys.installEventHandler");
    if (installStatus == 0) onPressed_ = std::move(onPressed);
    return installStatus;
  }
  void removeEventHandler() override {
    log_.record("hotKeys.removeEventHandler");
    onPressed_ = nullptr;
  }
  Status registerHotKey(const HotKey& hotKey) override {
    log_.record("hotKeys.register");
    if (registerStatus == 0) registered_ = hotKey;
    return registerStatus;
  }
  void unregisterHotKey() override {
    log_.record("hotKeys.unregister");
    registered_.reset();
  }
  std::unique_ptr<ObserverToken> addLocalKeyDownMonitor(
      std::function<bool(const KeyEvent&)> monitor) override {
    log_.record("hotKeys.addLocalMonitor");
    monitor_ = std::make_shared<Monitor>(std::move(monitor));
    return std::make_unique<Token>(log_, monitor_);
  }

 private:
  using Monitor = std::function<bool(const KeyEvent&)>;

  class Token final : public ObserverToken {
   public:
    Token(EventLog& log, std::shared_ptr<Monitor> monitor)
        : log_(log), monitor_(std::move(monitor)) {}
    ~Token() override {
      log_.record("hotKeys.removeLocalMonitor");
      *monitor_ = nullptr;
    }
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;

   private:
    EventLog& log_;
    std::shared_ptr<Monitor> monitor_;
  };

  EventLog& log_;
  std::function<void()> onPressed_;
  std::optional<HotKey> registered_;
  std::shared_ptr<Monitor> monitor_;
};

}  // namespace navora
