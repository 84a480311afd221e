#pragma once

#import <AppKit/AppKit.h>

#include "platform/StatusItem.h"

@class NavoraMenuTarget;

namespace navora {

class MacStatusItem final : public StatusItem {
 public:
  // The image must be made by MacImaging. The delegate must outlive the item.
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
