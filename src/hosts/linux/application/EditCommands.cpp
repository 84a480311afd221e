#include "hosts/linux/application/EditCommands.h"

#include <webkit2/webkit2.h>

namespace navora {
namespace {

// The engine's name of the command; null for what is none.
const char* pageCommandFor(MenuAction action) {
  switch (action) {
    case MenuAction::undo:
      return WEBKIT_EDITING_COMMAND_UNDO;
    case MenuAction::redo:
      return WEBKIT_EDITING_COMMAND_REDO;
    case MenuAction::cut:
      return WEBKIT_EDITING_COMMAND_CUT;
    case MenuAction::copy:
      return WEBKIT_EDITING_COMMAND_COPY;
    case MenuAction::paste:
      return WEBKIT_EDITING_COMMAND_PASTE;
    case MenuAction::selectAll:
      return WEBKIT_EDITING_COMMAND_SELECT_ALL;
    default:
      return nullptr;
  }
}

// The signal with which the toolkit's own keys do it.
const char* clipboardSignalFor(MenuAction action) {
  switch (action) {
    case MenuAction::cut:
      return "cut-clipboard";
    case MenuAction::copy:
      return "copy-clipboard";
    case MenuAction::paste:
      return "paste-clipboard";
    default:
      return nullptr;
  }
}

bool hasSignal(GtkWidget* widget, const char* name) {
  return g_signal_lookup(name, G_OBJECT_TYPE(widget)) != 0;
}

void selectAll(GtkWidget* focus) {
  if (GTK_IS_EDITABLE(focus)) {
    gtk_editable_select_region(GTK_EDITABLE(focus), 0, -1);
  } else if (GTK_IS_TEXT_VIEW(focus)) {
    g_signal_emit_by_name(focus, "select-all", TRUE);
  } else if (GTK_IS_LABEL(focus)) {
    gtk_label_select_region(GTK_LABEL(focus), 0, -1);
  }
}

}  // namespace

bool isEditCommand(MenuAction action) {
  return pageCommandFor(action) != nullptr;
}

void performEditCommand(MenuAction action, GtkWidget* focus) {
  if (focus == nullptr || !isEditCommand(action)) return;
  if (WEBKIT_IS_WEB_VIEW(focus)) {
    webkit_web_view_execute_editing_command(WEBKIT_WEB_VIEW(focus), pageCommandFor(action));
    return;
  }
  if (action == MenuAction::selectAll) return selectAll(focus);
  const char* signal = clipboardSignalFor(action);
  if (signal != nullptr && hasSignal(focus, signal)) g_signal_emit_by_name(focus, signal);
}

}  // namespace navora
