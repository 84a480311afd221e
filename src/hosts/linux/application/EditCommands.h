#pragma once

#include <gtk/gtk.h>

#include "platform/Menu.h"

namespace navora {

// Whether the action is about the text that has the keyboard: undo to selectAll.
bool isEditCommand(MenuAction action);

// Does it to a page, a text field, a text view or a label, with what that knows; anything else,
// null included, is left alone. The toolkit's own fields and views have no undo.
void performEditCommand(MenuAction action, GtkWidget* focus);

}  // namespace navora
