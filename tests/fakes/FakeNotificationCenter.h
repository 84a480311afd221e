#pragma once

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/NotificationCenter.h"

namespace navora {

// A notification service whose replies come from the test. Requests stay pending until then.
class FakeNotificationCenter final : public NotificationCenter {
 public:
  // The reply of answerStatus().
  AuthorizationStatus status = AuthorizationStatus::authorized;
  // All notifications added and authorizations requested so far.
  std::vector<UserNotification> added;
  std::vector<Options> requests;

  NotificationCenterDelegate* delegate() const { return delegate_; }
  // Acts as the user opening a notification with this URL.
  void click(std::optional<std::string> url) {
    if (delegate_ != nullptr) delegate_->didReceiveNotification(std::move(url));
  }

  // Acts as the desktop's service starting or exiting.
  void changeStatus(AuthorizationStatus changed) {
    status = changed;
    if (delegate_ != nullptr) delegate_->authorizationMayHaveChanged();
  }

  // Reply to the oldest pending request of each kind.
  void answerStatus() { take(statusQuestions_)(status); }
  void answerRequest(AuthorizationResult result) { take(requestQuestions_)(std::move(result)); }
  void finishAdd(std::optional<PlatformError> failure = std::nullopt) {
    take(adds_)(std::move(failure));
  }
  std::size_t statusQuestions() const { return statusQuestions_.size(); }
  std::size_t requestQuestions() const { return requestQuestions_.size(); }
  std::size_t addsUnderWay() const { return adds_.size(); }

  void setDelegate(NotificationCenterDelegate* delegate) override { delegate_ = delegate; }
  void requestAuthorization(Options options,
                            std::function<void(AuthorizationResult)> completion) override {
    requests.push_back(options);
    requestQuestions_.push_back(std::move(completion));
  }
  void authorizationStatus(std::function<void(AuthorizationStatus)> completion) override {
    statusQuestions_.push_back(std::move(completion));
  }
  void add(const UserNotification& notification,
           std::function<void(std::optional<PlatformError>)> completion) override {
    added.push_back(notification);
    adds_.push_back(std::move(completion));
  }

 private:
  template <class Completion>
  static Completion take(std::deque<Completion>& completions) {
    Completion oldest = std::move(completions.at(0));
    completions.pop_front();
    return oldest;
  }

  NotificationCenterDelegate* delegate_ = nullptr;
  std::deque<std::function<void(AuthorizationStatus)>> statusQuestions_;
  std::deque<std::function<void(AuthorizationResult)>> requestQuestions_;
  std::deque<std::function<void(std::optional<PlatformError>)>> adds_;
};

}  // namespace navora
