#pragma once

#import <AppKit/AppKit.h>

#include "hosts/macos/application/MenuTarget.h"
#include "platform/StatusItem.h"

namespace navora {

class MacStatusItem final : public StatusItem {
 public:
  // The image must be of this host. The delegate must outlive the item.
  MacStatusItem(const StatusItemDescription& description, MenuDelegate& delegate);
  ~MacStatusItem() override;
  MacStatusItem(const MacStatusItem&) = delete;
  MacStatusItem& operator=(const MacStatusItem&) = delete;

  void insertMenuItem(std::size_t index, const MenuItem& item) override;

 private:
  NavoraMenuTarget* target_;
  NSMenu* menu_;
  NSStatusItem* item_;
};

}  // namespace navora
