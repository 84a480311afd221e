#pragma once

#include <vector>

#include "fakes/EventLog.h"
#include "platform/Workspace.h"

namespace navora {

class FakeWorkspace final : public Workspace {
 public:
  explicit FakeWorkspace(EventLog& log) : log_(log) {}

  void open(const Url& url) override {
    log_.record("workspace.open " + url.string());
    opened_.push_back(url);
  }

  const std::vector<Url>& opened() const { return opened_; }

 private:
  EventLog& log_;
  std::vector<Url> opened_;
};

}  // namespace navora
