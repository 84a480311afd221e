#include "hosts/macos/window/MacDialogs.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/window/MacMainWindow.h"

namespace navora {

namespace {

NSAlert* makeAlert(const AlertDescription& description) {
  NSAlert* alert = [[NSAlert alloc] init];
  alert.messageText = toNSString(description.messageText);
  alert.informativeText = toNSString(description.informativeText);
  for (const std::string& title : description.buttons) {
    [alert addButtonWithTitle:toNSString(title)];
  }
  return alert;
}

NSTextField* addTextField(const AlertDescription::TextField& description, NSAlert* alert) {
  NSTextField* field = [NSTextField textFieldWithString:toNSString(description.text)];
  field.frame = NSMakeRect(0, 0, description.size.width, description.size.height);
  alert.accessoryView = field;
  // -layout sets the alert's first responder, so it must run before ours is set.
  [alert layout];
  alert.window.initialFirstResponder = field;
  return field;
}

// Returns the index of the pressed button, or the last one if the alert was closed in another way.
std::size_t pressedButton(NSModalResponse response, std::size_t buttons) {
  const std::size_t last = buttons == 0 ? 0 : buttons - 1;
  const NSInteger index = response - NSAlertFirstButtonReturn;
  return index >= 0 && static_cast<std::size_t>(index) <= last ? static_cast<std::size_t>(index)
                                                               : last;
}

std::vector<std::filesystem::path> toPaths(NSArray<NSURL*>* urls) {
  std::vector<std::filesystem::path> paths;
  for (NSURL* url in urls) {
    paths.push_back(toPath(url));
  }
  return paths;
}

// `window` must be made by MacPlatform.
NSWindow* nsWindow(MainWindow& window) {
  return static_cast<MacMainWindow&>(window).nsWindow();
}

}  // namespace

void MacDialogs::runAlert(const AlertDescription& alert, AlertCompletion completion) {
  NSAlert* panel = makeAlert(alert);
  NSTextField* field = alert.textField ? addTextField(*alert.textField, panel) : nil;
  const NSModalResponse response = [panel runModal];
  completion(AlertResult{.button = pressedButton(response, alert.buttons.size()),
                         .text = toString(field.stringValue)});
}

void MacDialogs::beginOpenPanel(MainWindow& window, const OpenPanelParameters& parameters,
                                OpenPanelCompletion completion) {
  NSOpenPanel* panel = [NSOpenPanel openPanel];
  panel.allowsMultipleSelection = parameters.allowsMultipleSelection;
  panel.canChooseDirectories = parameters.allowsDirectories;
  [panel beginSheetModalForWindow:nsWindow(window)
                completionHandler:^(NSModalResponse response) {
                  completion(response == NSModalResponseOK ? std::optional(toPaths(panel.URLs))
                                                           : std::nullopt);
                }];
}

void MacDialogs::beginSavePanel(MainWindow& window, const std::string& suggestedName,
                                SavePanelCompletion completion) {
  NSSavePanel* panel = [NSSavePanel savePanel];
  panel.nameFieldStringValue = toNSString(suggestedName);
  [panel beginSheetModalForWindow:nsWindow(window)
                completionHandler:^(NSModalResponse response) {
                  NSURL* url = response == NSModalResponseOK ? panel.URL : nil;
                  completion(url == nil ? std::nullopt : std::optional(toPath(url)));
                }];
}

}  // namespace navora
