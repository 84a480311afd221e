#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtkmm/box.h>
#include <gtkmm/overlay.h>
#include <gtkmm/window.h>
#include <sigc++/connection.h>

#include "hosts/linux/window/ExposeObserver.h"
#include "platform/MainWindow.h"
#include "platform/UserDefaults.h"

namespace navora {

class ColorScheme;
class LinuxWebView;

// The main window: menu bar, content and the overlays over it.
class LinuxMainWindow final : public MainWindow {
 public:
  // All references must outlive the window.
  LinuxMainWindow(const MainWindowDescription& description, MainWindowDelegate& delegate,
                  UserDefaults& defaults, ColorScheme& colorScheme);
  ~LinuxMainWindow() override;

  void setTitle(const std::string& title) override;
  void setContentView(std::shared_ptr<WebView> webView) override;
  void makeContentViewFirstResponder() override;
  // Applies to all windows of the process (see ColorScheme).
  void setAppearance(WindowAppearance appearance) override;
  bool isMiniaturized() const override;
  void deminiaturize() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;

  // Adds the menu bar above the content, before the window is first shown. The sizes of the
  // description are the content's, so the window becomes higher by the bar; a stored size is the
  // whole window's.
  void setMenuBar(Gtk::Widget& menuBar);
  bool isVisible() const { return window_.get_visible(); }
  // Raises and focuses the window if it is visible, overriding focus stealing prevention.
  void forceToFront();
  // Gives the keyboard to the content or, while the content is covered, to the topmost cover.
  void focusContent();
  // Keep the keyboard from the content while something covers it: the content cannot have the
  // focus, which moves to `focus`, a widget of the cover.
  void coverContent(Gtk::Widget& focus);
  void uncoverContent(Gtk::Widget& focus);
  // Redraws the content as a whole. To be called when a widget over it appears, moves or is hidden:
  // the web view paints only its background colour in an exposed part (WebKitGTK up to 2.50).
  void redrawContent() { overlay_.queue_draw(); }

  Gtk::Window& native() { return window_; }
  Gtk::Overlay& overlay() { return overlay_; }

 private:
  void restoreSize(int menuBarHeight);
  void sizeChanged();
  void saveSize();
  void matchBackgroundToTheme();
  void updateContentFocus();

  UserDefaults& defaults_;
  ColorScheme& colorScheme_;
  const MainWindowDescription description_;
  std::shared_ptr<LinuxWebView> webView_;
  Gtk::Window window_;
  // What takes the focus instead of the content, the topmost last.
  std::vector<Gtk::Widget*> covers_;
  Gtk::Box layout_{Gtk::ORIENTATION_VERTICAL};
  Gtk::Overlay overlay_;
  ExposeObserver exposeObserver_{window_, [this] { redrawContent(); }};
  sigc::connection pendingSave_;
};

}  // namespace navora
