#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtkmm/icontheme.h>

#include "app/NavoraIcon.h"
#include "hosts/linux/graphics/LinuxImaging.h"
#include "hosts/linux/system/ApplicationId.h"
#include "hosts/linux/window/ApplicationIcon.h"
#include "linux/window/WindowTest.h"

namespace navora {
namespace {

using testing::UnorderedElementsAre;

// One image of EWMH's _NET_WM_ICON.
struct WindowIcon {
  int size = 0;
  std::vector<std::uint32_t> pixels;  // 0xAARRGGBB, not premultiplied

  std::uint32_t alphaAt(double x, double y) const { return at(x, y) >> 24U; }
  driver::PixelColor colorAt(double x, double y) const {
    const auto channel = [&](unsigned shift) {
      return static_cast<int>((at(x, y) >> shift) & 0xFFU);
    };
    return {channel(16), channel(8), channel(0)};
  }

 private:
  // In fractions of the size.
  std::uint32_t at(double x, double y) const {
    const auto column = static_cast<std::size_t>(x * size);
    const auto row = static_cast<std::size_t>(y * size);
    return pixels.at(row * static_cast<std::size_t>(size) + column);
  }
};

class WindowIconTest : public WindowTest {
 protected:
  void TearDown() override {
    Gtk::Window::set_default_icon_list({});
    theme_->set_search_path(searchPath_);
  }

  // Returns the icons of a main window that is shown now.
  std::vector<WindowIcon> shownIcons() {
    const auto window = makeWindow();
    EXPECT_TRUE(show(*window));
    const auto data =
        display_.connection().numbersProperty(infoOf(window->native()).id, "_NET_WM_ICON");
    std::vector<WindowIcon> icons;
    for (std::size_t next = 0; next + 2 <= data.size();) {
      const std::size_t count = static_cast<std::size_t>(data[next]) * data[next + 1];
      EXPECT_EQ(data[next], data[next + 1]);
      EXPECT_LE(next + 2 + count, data.size());
      if (next + 2 + count > data.size()) break;
      const auto begin = data.begin() + static_cast<std::ptrdiff_t>(next) + 2;
      icons.push_back(
          {static_cast<int>(data[next]), {begin, begin + static_cast<std::ptrdiff_t>(count)}});
      next += 2 + count;
    }
    return icons;
  }

  const Glib::RefPtr<Gtk::IconTheme> theme_ = Gtk::IconTheme::get_default();
  const std::vector<Glib::ustring> searchPath_ = theme_->get_search_path();
};

TEST_F(WindowIconTest, TheMainWindowHasTheIconInTheUsualSizes) {
  ASSERT_FALSE(theme_->has_icon(applicationId)) << "the tests' desktop has it installed";
  useApplicationIcon(NAVORA_DATA_FOLDER);
  std::vector<int> sizes;
  for (const WindowIcon& icon : shownIcons()) {
    SCOPED_TRACE(icon.size);
    sizes.push_back(icon.size);
    // The tile is a red gradient, lighter at the top.
    EXPECT_LE(icon.colorAt(0.5, 0.15).distance({0xE8, 0x42, 0x5F}), 16);
    EXPECT_LE(icon.colorAt(0.5, 0.85).distance({0xC4, 0x1F, 0x45}), 16);
    EXPECT_EQ(icon.alphaAt(0.5, 0.15), 255U);
    EXPECT_EQ(icon.alphaAt(0, 0), 0U);
    // The middle of the mark's tie beam, which is at least one pixel wide in these sizes.
    if (icon.size >= 24) {
      EXPECT_LE(icon.colorAt(0.5, 58.0 / 128).distance({255, 255, 255}), 64);
    }
  }
  EXPECT_THAT(sizes, UnorderedElementsAre(16, 24, 32, 48, 64, 128));
}

TEST_F(WindowIconTest, TheIconThemeKnowsTheIcon) {
  useApplicationIcon(NAVORA_DATA_FOLDER);
  EXPECT_TRUE(theme_->has_icon(applicationId));
}

// As panels recolour it: GTK fills the outlines with the colour of the text.
TEST_F(WindowIconTest, TheSymbolicIconIsTheMarkInTheColourOfThePanel) {
  constexpr int size = 64;
  useApplicationIcon(NAVORA_DATA_FOLDER);
  auto found = theme_->lookup_icon(std::string(applicationId) + "-symbolic", size,
                                   Gtk::ICON_LOOKUP_FORCE_SYMBOLIC);
  ASSERT_TRUE(found);
  bool isSymbolic = false;
  const auto icon = found.load_symbolic(Gdk::RGBA("rgb(255, 128, 0)"), Gdk::RGBA(), Gdk::RGBA(),
                                        Gdk::RGBA(), isSymbolic);
  ASSERT_TRUE(isSymbolic);
  ASSERT_EQ(icon->get_width(), size);
  LinuxImaging imaging;
  const auto mark = NavoraIcon::render(imaging, 1);
  double difference = 0;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const guint8* pixel = icon->get_pixels() + y * icon->get_rowstride() + x * 4;
      difference += std::abs(mark->colorAt(x, y)->alpha - pixel[3] / 255.0);
      if (pixel[3] != 255) continue;
      EXPECT_EQ(std::vector<int>(pixel, pixel + 3), (std::vector{255, 128, 0}));
    }
  }
  EXPECT_LT(difference / (size * size), 0.002);
}

TEST_F(WindowIconTest, AFolderWithoutTheIconLeavesTheGenericOne) {
  useApplicationIcon("/nonexistent");
  for (const WindowIcon& icon : shownIcons())
    EXPECT_GT(icon.colorAt(0.5, 0.15).distance({0xE8, 0x42, 0x5F}), 64);
}

}  // namespace
}  // namespace navora
