#pragma once

#include <utility>

#include "fakes/EventLog.h"
#include "platform/StatusItem.h"

namespace navora {

class FakeStatusItem final : public StatusItem {
 public:
  // `current` points to the item until it is destroyed.
  FakeStatusItem(EventLog& log, StatusItemDescription description, MenuDelegate& delegate,
                 FakeStatusItem*& current)
      : log_(log), description_(std::move(description)), delegate_(delegate), current_(current) {
    log_.record("statusItem.make");
    current_ = this;
  }
  ~FakeStatusItem() override {
    log_.record("statusItem.remove");
    current_ = nullptr;
  }
  FakeStatusItem(const FakeStatusItem&) = delete;
  FakeStatusItem& operator=(const FakeStatusItem&) = delete;

  const StatusItemDescription& description() const { return description_; }
  void choose(DelegateAction action) { delegate_.performMenuAction(action); }

  void insertMenuItem(std::size_t index, const MenuItem& item) override {
    auto& items = description_.menu.items;
    items.insert(items.begin() + static_cast<std::ptrdiff_t>(index), item);
  }

 private:
  EventLog& log_;
  StatusItemDescription description_;
  MenuDelegate& delegate_;
  FakeStatusItem*& current_;
};

}  // namespace navora
