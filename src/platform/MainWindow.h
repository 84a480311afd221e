#pragma once

#include <memory>
#include <string>

#include "platform/Geometry.h"
#include "platform/WindowAppearance.h"

namespace navora {

class WebView;

struct MainWindowDescription {
  std::string title;
  Size contentSize;
  Size minimumSize;
  // Under this name the frame is kept in the user defaults. The size is restored at the next
  // launch; the position is not: the window starts centred on the screen.
  std::string frameAutosaveName;

  bool operator==(const MainWindowDescription&) const = default;
};

class MainWindowDelegate {
 public:
  virtual ~MainWindowDelegate() = default;
  // The user asks to close the window; false keeps it.
  virtual bool windowShouldClose() = 0;
};

// The one titled, closable, miniaturizable and resizable window. It starts hidden.
class MainWindow {
 public:
  virtual ~MainWindow() = default;

  virtual void setTitle(const std::string& title) = 0;
  // Fills the window with the view.
  virtual void setContentView(std::shared_ptr<WebView> webView) = 0;
  // Gives the view the keyboard focus within the window.
  virtual void makeContentViewFirstResponder() = 0;
  virtual void setAppearance(WindowAppearance appearance) = 0;
  virtual bool isMiniaturized() const = 0;
  virtual void deminiaturize() = 0;
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderOut() = 0;
};

}  // namespace navora
