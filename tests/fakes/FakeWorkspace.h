#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fakes/EventLog.h"
#include "platform/Workspace.h"

namespace navora {

class FakeRunningApplication final : public RunningApplication {
 public:
  FakeRunningApplication(EventLog& log, std::string name) : log_(log), name_(std::move(name)) {}

  bool terminated = false;

  bool isTerminated() const override { return terminated; }
  void activate() override { log_.record("application.activate " + name_); }

 private:
  EventLog& log_;
  std::string name_;
};

class FakeWorkspace final : public Workspace {
 public:
  explicit FakeWorkspace(EventLog& log) : log_(log) {}

  std::shared_ptr<FakeRunningApplication> frontmost;
  std::vector<Screen> allScreens{{{0, 0, 1440, 900}, {0, 0, 1440, 875}}};
  bool hasMainScreen = true;
  Point mouse{700, 400};

  void open(const Url& url) override {
    log_.record("workspace.open " + url.string());
    opened_.push_back(url);
  }
  std::shared_ptr<RunningApplication> frontmostApplication() override { return frontmost; }
  std::vector<Screen> screens() const override { return allScreens; }
  // The first of allScreens, if any.
  std::optional<Screen> mainScreen() const override {
    return hasMainScreen && !allScreens.empty() ? std::optional(allScreens.front()) : std::nullopt;
  }
  Point mouseLocation() const override { return mouse; }

  const std::vector<Url>& opened() const { return opened_; }

 private:
  EventLog& log_;
  std::vector<Url> opened_;
};

}  // namespace navora
