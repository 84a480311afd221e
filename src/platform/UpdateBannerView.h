#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace navora {

class MainWindow;

// In the order in which they are reached: the first two stand in one row, the third below them, the
// last one in the row of the title.
enum class UpdateBannerButton { primary, secondary, tertiary, close };

struct UpdateBannerProgress {
  enum class Kind { hidden, indeterminate, fraction };

  Kind kind = Kind::hidden;
  // From 0 to 1; only of a fraction.
  double fraction = 0;

  static constexpr UpdateBannerProgress indeterminate() { return {Kind::indeterminate, 0}; }
  static constexpr UpdateBannerProgress ofFraction(double value) { return {Kind::fraction, value}; }

  bool operator==(const UpdateBannerProgress&) const = default;
};

// Everything that the banner says and which of its buttons are there.
struct UpdateBannerContent {
  struct Button {
    std::string title;
    bool visible = false;
    // A disabled button is seen but cannot be pressed.
    bool enabled = true;
    // Empty for none of its own.
    std::string toolTip;
    std::string accessibilityLabel;

    bool operator==(const Button&) const = default;
  };

  std::string title;
  std::string detail;
  std::array<Button, 4> buttons;
  // Of the banner as a whole.
  std::string accessibilityLabel;

  Button& button(UpdateBannerButton which) { return buttons[static_cast<std::size_t>(which)]; }
  const Button& button(UpdateBannerButton which) const {
    return buttons[static_cast<std::size_t>(which)];
  }

  bool operator==(const UpdateBannerContent&) const = default;
};

// How the banner is built, in points. A column, aligned at its leading edge, holds from the top:
// the row of title and close button, the detail text, the bar, the row of the first two buttons,
// the third button. The heading row, the detail text and the bar are as wide as the column; long
// texts wrap or are cut and never widen the banner.
struct UpdateBannerLayout {
  static constexpr double titleFontSize = 14;   // semibold
  static constexpr double detailFontSize = 12;  // in the secondary label colour
  static constexpr double closeFontSize = 18;
  static constexpr double closeButtonSize = 24;
  // Between neighbours, in rows as in the column.
  static constexpr double spacing = 8;
  static constexpr double horizontalInset = 16;
  static constexpr double verticalInset = 14;
  static constexpr double cornerRadius = 16;
  static constexpr double borderWidth = 0.5;  // in the separator colour

  // The distances to the edges of the window's content, over which the banner floats.
  static constexpr double trailingDistance = 18;
  static constexpr double topDistance = 14;
  static constexpr double minimumLeadingDistance = 18;
  // Gives way in a window that is too narrow for it.
  static constexpr double width = 480;
};

// How much it matters that an announcement interrupts what is being read aloud.
enum class AnnouncementPriority { low = 10, medium = 50, high = 90 };

class UpdateBannerViewDelegate {
 public:
  virtual ~UpdateBannerViewDelegate() = default;
  virtual void bannerButtonPressed(UpdateBannerButton button) = 0;
};

// The card over the top right corner of the main window's content that tells about updates. The
// primary button has the system's red. Made hidden, in no window, and empty; shows what it is told.
class UpdateBannerView {
 public:
  virtual ~UpdateBannerView() = default;

  // None to take it away; it must be taken away before it ends.
  virtual void setDelegate(UpdateBannerViewDelegate* delegate) = 0;
  // Over everything in the window's content that was added before, for the life of the window. To
  // be called once.
  virtual void attach(MainWindow& window) = 0;

  virtual void setHidden(bool hidden) = 0;
  virtual bool isHidden() const = 0;
  // May come while a button of it is being pressed.
  virtual void setContent(const UpdateBannerContent& content) = 0;
  // An indeterminate bar is animated.
  virtual void setProgress(UpdateBannerProgress progress) = 0;

  // For people who use a screen reader.
  virtual void announce(const std::string& text, AnnouncementPriority priority) = 0;
};

}  // namespace navora
