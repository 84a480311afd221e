#pragma once

#include <memory>
#include <string>

#include "platform/Geometry.h"
#include "platform/WindowAppearance.h"

namespace navora {

class WebView;

// The initial state of the main window. Sizes are in points; menus within the window come on top.
struct MainWindowDescription {
  std::string title;
  Size contentSize;
  Size minimumSize;
  // The frame is stored in the user defaults under this name. The next launch restores its size,
  // not its position: the window is initially centred on the screen.
  std::string frameAutosaveName;

  bool operator==(const MainWindowDescription&) const = default;
};

// Receives the window's events. Called on the main thread.
class MainWindowDelegate {
 public:
  virtual ~MainWindowDelegate() = default;
  // The user asked to close the window. Returns false to keep it.
  virtual bool windowShouldClose() = 0;
};

// The application's one titled, closable, miniaturizable and resizable window. Created hidden.
class MainWindow {
 public:
  virtual ~MainWindow() = default;

  virtual void setTitle(const std::string& title) = 0;
  // Makes the view the window's content.
  virtual void setContentView(std::shared_ptr<WebView> webView) = 0;
  // Gives the content view the keyboard focus within the window.
  virtual void makeContentViewFirstResponder() = 0;
  virtual void setAppearance(WindowAppearance appearance) = 0;
  virtual bool isMiniaturized() const = 0;
  virtual void deminiaturize() = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderOut() = 0;
};

}  // namespace navora
