#pragma once

#include <memory>
#include <string>

#include "platform/Image.h"
#include "platform/Menu.h"

namespace navora {

struct StatusItemDescription {
  std::shared_ptr<Image> image;
  std::string accessibilityLabel;
  Menu menu;
};

// The application's item in the desktop's status bar or tray. Destroying it removes the item.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  // Inserts `item` before the item at `index`; an index beyond the end appends it.
  virtual void insertMenuItem(std::size_t index, const MenuItem& item) = 0;
};

}  // namespace navora
