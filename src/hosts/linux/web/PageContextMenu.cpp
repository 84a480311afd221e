#include "hosts/linux/web/PageContextMenu.h"

#include <algorithm>
#include <array>

namespace navora {
namespace {

constexpr std::array removedActions = {
    WEBKIT_CONTEXT_MENU_ACTION_OPEN_LINK_IN_NEW_WINDOW,
    WEBKIT_CONTEXT_MENU_ACTION_OPEN_IMAGE_IN_NEW_WINDOW,
    WEBKIT_CONTEXT_MENU_ACTION_OPEN_FRAME_IN_NEW_WINDOW,
    WEBKIT_CONTEXT_MENU_ACTION_OPEN_VIDEO_IN_NEW_WINDOW,
    WEBKIT_CONTEXT_MENU_ACTION_OPEN_AUDIO_IN_NEW_WINDOW,
    WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_LINK_TO_DISK,
    WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_IMAGE_TO_DISK,
    WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_VIDEO_TO_DISK,
    WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_AUDIO_TO_DISK,
};

bool isRemoved(WebKitContextMenuItem* item) {
  return std::ranges::find(removedActions, webkit_context_menu_item_get_stock_action(item)) !=
         removedActions.end();
}

// Removes separators that come first, last or after another one.
void removeLeftOverSeparators(WebKitContextMenu* menu) {
  bool afterSeparator = true;
  for (guint index = 0; index < webkit_context_menu_get_n_items(menu);) {
    WebKitContextMenuItem* item = webkit_context_menu_get_item_at_position(menu, index);
    const bool isSeparator = webkit_context_menu_item_is_separator(item) != FALSE;
    const bool isLast = index + 1 == webkit_context_menu_get_n_items(menu);
    if (isSeparator && (afterSeparator || isLast)) {
      webkit_context_menu_remove(menu, item);
    } else {
      ++index;
    }
    afterSeparator = isSeparator;
  }
}

}  // namespace

PageContextMenu::PageContextMenu(WebKitWebView* view, PageActions& actions)
    : actions_(actions), signal_(view, "context-menu", G_CALLBACK(onContextMenu), this) {}

gboolean PageContextMenu::onContextMenu(WebKitWebView*, WebKitContextMenu* menu, GdkEvent*,
                                        WebKitHitTestResult*, gpointer self) {
  static_cast<PageContextMenu*>(self)->removeUnsupportedItems(menu);
  removeLeftOverSeparators(menu);
  const bool isEmpty = webkit_context_menu_get_n_items(menu) == 0;
  return isEmpty ? TRUE : FALSE;
}

void PageContextMenu::removeUnsupportedItems(WebKitContextMenu* menu) {
  linkChosen_ = {};
  for (guint index = 0; index < webkit_context_menu_get_n_items(menu);) {
    WebKitContextMenuItem* item = webkit_context_menu_get_item_at_position(menu, index);
    if (isRemoved(item)) {
      webkit_context_menu_remove(menu, item);
      continue;
    }
    if (webkit_context_menu_item_get_stock_action(item) == WEBKIT_CONTEXT_MENU_ACTION_OPEN_LINK) {
      linkChosen_ = SignalConnection(webkit_context_menu_item_get_gaction(item), "activate",
                                     G_CALLBACK(onLinkChosen), this);
    }
    ++index;
  }
}

void PageContextMenu::onLinkChosen(GAction*, GVariant*, gpointer self) {
  static_cast<PageContextMenu*>(self)->actions_.contextMenuLinkChosen();
}

}  // namespace navora
