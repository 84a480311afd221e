#pragma once

#include <functional>
#include <string>

namespace navora {

// What the overlay over the page shows: a title, a wrapping detail text in the secondary label
// colour and two buttons, stacked in this order in the middle of the window.
struct ErrorViewDescription {
  static constexpr double titleFontSize = 24;
  static constexpr double stackSpacing = 18;
  static constexpr double maximumStackWidth = 480;

  std::string title;
  std::string detail;
  // Return presses this one.
  std::string retryTitle;
  std::string browserTitle;
  std::function<void()> onRetry;
  std::function<void()> onOpenInBrowser;
};

// Opaque overlay that covers the whole page. Made hidden; destroying it removes it from its window.
class ErrorView {
 public:
  virtual ~ErrorView() = default;

  virtual void setDetail(const std::string& text) = 0;
  virtual void setHidden(bool hidden) = 0;
  virtual bool isHidden() const = 0;
};

}  // namespace navora
