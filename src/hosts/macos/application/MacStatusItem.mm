#include "hosts/macos/application/MacStatusItem.h"

#include <algorithm>

#include "hosts/macos/application/AppKitMenus.h"
#include "hosts/macos/graphics/MacImaging.h"
#include "hosts/macos/system/Conversions.h"

namespace navora {

MacStatusItem::MacStatusItem(const StatusItemDescription& description, MenuDelegate& delegate)
    : target_([[NavoraMenuTarget alloc] init]),
      menu_(toNSMenu(description.menu, target_)),
      item_([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength]) {
  target_.delegate = &delegate;
  item_.button.image = nsImage(*description.image);
  item_.button.accessibilityLabel = toNSString(description.accessibilityLabel);
  item_.menu = menu_;
}

MacStatusItem::~MacStatusItem() {
  target_.delegate = nullptr;
  [NSStatusBar.systemStatusBar removeStatusItem:item_];
}

void MacStatusItem::insertMenuItem(std::size_t index, const MenuItem& item) {
  const NSInteger position = std::min(static_cast<NSInteger>(index), menu_.numberOfItems);
  [menu_ insertItem:toNSMenuItem(item, target_) atIndex:position];
}

}  // namespace navora
