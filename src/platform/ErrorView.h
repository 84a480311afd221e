#pragma once

#include <functional>
#include <string>

namespace navora {

// The contents of the overlay: a title, a wrapping detail text in the secondary label colour and
// two buttons, stacked in this order in the centre of the window. Lengths are in points.
struct ErrorViewDescription {
  static constexpr double titleFontSize = 24;
  static constexpr double stackSpacing = 18;
  static constexpr double maximumStackWidth = 480;

  std::string title;
  std::string detail;
  // The default button, pressed by Return.
  std::string retryTitle;
  std::string browserTitle;
  std::function<void()> onRetry;
  std::function<void()> onOpenInBrowser;
};

// An opaque overlay that covers the whole page. Created hidden; destroying it removes it from its
// window.
class ErrorView {
 public:
  virtual ~ErrorView() = default;

  virtual void setDetail(const std::string& text) = 0;
  virtual void setHidden(bool hidden) = 0;
  virtual bool isHidden() const = 0;
};

}  // namespace navora
