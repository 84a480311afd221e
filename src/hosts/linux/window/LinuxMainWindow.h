#pragma once

#include <memory>
#include <string>

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

class LinuxMainWindow final : public MainWindow {
 public:
  // All references must outlive the window.
  LinuxMainWindow(const MainWindowDescription& description, MainWindowDelegate& delegate,
                  UserDefaults& defaults, ColorScheme& colorScheme);
  ~LinuxMainWindow() override;

  void setTitle(const std::string& title) override;
  void setContentView(std::shared_ptr<WebView> webView) override;
  void makeContentViewFirstResponder() override;
  // The toolkit knows one appearance for all of the process.
  void setAppearance(WindowAppearance appearance) override;
  bool isMiniaturized() const override;
  void deminiaturize() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;

  // Above the content.
  void setMenuBar(Gtk::Widget& menuBar);
  bool isVisible() const { return window_.get_visible(); }
  // Past the window manager's prevention of focus stealing.
  void forceToFront();
  void focusContent();
  // For what appears in front of the content, or goes or moves there: in a part that comes to light
  // again the web view shows nothing but its background colour, until it is drawn as a whole
  // (WebKitGTK 2.50 and before).
  void redrawContent() { overlay_.queue_draw(); }

  Gtk::Window& native() { return window_; }
  Gtk::Overlay& overlay() { return overlay_; }

 private:
  void restoreSize(const MainWindowDescription& description);
  void sizeChanged();
  void saveSize();
  void matchBackgroundToTheme();

  UserDefaults& defaults_;
  ColorScheme& colorScheme_;
  const std::string autosaveName_;
  std::shared_ptr<LinuxWebView> webView_;
  Gtk::Window window_;
  Gtk::Box layout_{Gtk::ORIENTATION_VERTICAL};
  Gtk::Overlay overlay_;
  ExposeObserver uncoveredParts_{window_, [this] { redrawContent(); }};
  sigc::connection pendingSave_;
};

}  // namespace navora
