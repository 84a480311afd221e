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

// The application's place in the desktop's bar of status items: there as long as this object is.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  // Shifts the items from `index` on.
  virtual void insertMenuItem(std::size_t index, const MenuItem& item) = 0;
};

}  // namespace navora
