#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace navora {

class MainWindow;

// The banner's buttons in tab order. The first two share a row, the third is below them, and the
// close button is in the row of the title.
enum class UpdateBannerButton { primary, secondary, tertiary, close };

struct UpdateBannerProgress {
  enum class Kind { hidden, indeterminate, fraction };

  Kind kind = Kind::hidden;
  // From 0 to 1; used for Kind::fraction only.
  double fraction = 0;

  static constexpr UpdateBannerProgress indeterminate() { return {Kind::indeterminate, 0}; }
  static constexpr UpdateBannerProgress ofFraction(double value) { return {Kind::fraction, value}; }

  bool operator==(const UpdateBannerProgress&) const = default;
};

// The banner's texts and the state of its buttons.
struct UpdateBannerContent {
  struct Button {
    std::string title;
    bool visible = false;
    // A disabled button is visible but cannot be pressed.
    bool enabled = true;
    // No tool tip if empty.
    std::string toolTip;
    std::string accessibilityLabel;

    bool operator==(const Button&) const = default;
  };

  std::string title;
  std::string detail;
  std::array<Button, 4> buttons;
  // The label of the whole banner.
  std::string accessibilityLabel;

  Button& button(UpdateBannerButton which) { return buttons[static_cast<std::size_t>(which)]; }
  const Button& button(UpdateBannerButton which) const {
    return buttons[static_cast<std::size_t>(which)];
  }

  bool operator==(const UpdateBannerContent&) const = default;
};

// The banner's metrics, in points. A column with leading alignment contains, from the top: the row
// of title and close button, the detail text, the progress bar, the row of the first two buttons,
// the third button. The title row, the detail text and the progress bar fill the width; long texts
// wrap or are truncated and never widen the banner.
struct UpdateBannerLayout {
  static constexpr double titleFontSize = 14;   // semibold
  static constexpr double detailFontSize = 12;  // in the secondary label colour
  static constexpr double closeFontSize = 18;
  // The detail text may be one of the page's. It is cut after these lines, the text's own line
  // breaks included, so that the buttons stay in the window.
  static constexpr int detailLines = 12;
  static constexpr double closeButtonSize = 24;
  // Between adjacent views, in rows and in the column.
  static constexpr double spacing = 8;
  static constexpr double horizontalInset = 16;
  static constexpr double verticalInset = 14;
  static constexpr double cornerRadius = 16;
  static constexpr double borderWidth = 0.5;  // in the separator colour

  // Distances to the edges of the window's content.
  static constexpr double trailingDistance = 18;
  static constexpr double topDistance = 14;
  static constexpr double minimumLeadingDistance = 18;
  // Reduced in a window that is too narrow.
  static constexpr double width = 480;
};

// Receives button presses. Called on the main thread.
class UpdateBannerViewDelegate {
 public:
  virtual ~UpdateBannerViewDelegate() = default;
  virtual void bannerButtonPressed(UpdateBannerButton button) = 0;
};

// A card over the top right corner of the main window's content that shows the state of an update.
// Its primary button is red. Created hidden, empty and without a window.
class UpdateBannerView {
 public:
  virtual ~UpdateBannerView() = default;

  // The delegate must be replaced by null before it is destroyed.
  virtual void setDelegate(UpdateBannerViewDelegate* delegate) = 0;
  // Adds the banner to the window's content, above everything added before, for the life of the
  // window. Called at most once.
  virtual void attach(MainWindow& window) = 0;

  virtual void setHidden(bool hidden) = 0;
  virtual bool isHidden() const = 0;
  // May be called from bannerButtonPressed().
  virtual void setContent(const UpdateBannerContent& content) = 0;
  // An indeterminate bar is animated.
  virtual void setProgress(UpdateBannerProgress progress) = 0;

  // Announces `text` through assistive technologies with medium priority.
  virtual void announce(const std::string& text) = 0;
};

}  // namespace navora
