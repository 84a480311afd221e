#include "hosts/linux/application/MenuCommands.h"

#include <webkit2/webkit2.h>

namespace navora {
namespace {

const char* pageCommandFor(EditAction action) {
  switch (action) {
    case EditAction::undo:
      return WEBKIT_EDITING_COMMAND_UNDO;
    case EditAction::redo:
      return WEBKIT_EDITING_COMMAND_REDO;
    case EditAction::cut:
      return WEBKIT_EDITING_COMMAND_CUT;
    case EditAction::copy:
      return WEBKIT_EDITING_COMMAND_COPY;
    case EditAction::paste:
      return WEBKIT_EDITING_COMMAND_PASTE;
    case EditAction::selectAll:
      return WEBKIT_EDITING_COMMAND_SELECT_ALL;
  }
  return nullptr;
}

// Emits the action signal that the widget's own key binding would, if the widget has it.
void emitClipboardSignal(GtkWidget* widget, const char* name) {
  if (g_signal_lookup(name, G_OBJECT_TYPE(widget)) != 0) g_signal_emit_by_name(widget, name);
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

void performOnNativeText(EditAction action, GtkWidget* focus) {
  switch (action) {
    case EditAction::undo:
    case EditAction::redo:
      return;
    case EditAction::cut:
      return emitClipboardSignal(focus, "cut-clipboard");
    case EditAction::copy:
      return emitClipboardSignal(focus, "copy-clipboard");
    case EditAction::paste:
      return emitClipboardSignal(focus, "paste-clipboard");
    case EditAction::selectAll:
      return selectAll(focus);
  }
}

}  // namespace

void ApplicationCommands::perform(ApplicationAction action) const {
  // A copy, because the call may destroy this object together with its menu.
  const ApplicationCommands commands = *this;
  switch (action) {
    case ApplicationAction::hide:
      return commands.hide();
    case ApplicationAction::terminate:
      return commands.terminate();
  }
}

void performEditAction(EditAction action, GtkWidget* focus) {
  if (focus == nullptr) return;
  if (WEBKIT_IS_WEB_VIEW(focus)) {
    webkit_web_view_execute_editing_command(WEBKIT_WEB_VIEW(focus), pageCommandFor(action));
  } else {
    performOnNativeText(action, focus);
  }
}

}  // namespace navora
