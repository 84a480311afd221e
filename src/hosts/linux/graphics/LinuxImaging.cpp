#include "hosts/linux/graphics/LinuxImaging.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include <cairo.h>

#include "hosts/linux/graphics/CairoCanvas.h"

namespace navora {
namespace {

struct SurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

struct ContextDeleter {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

class LinuxBitmap final : public Bitmap {
 public:
  explicit LinuxBitmap(SurfacePtr surface)
      : surface_(std::move(surface)),
        size_{static_cast<double>(pixelsWide()), static_cast<double>(pixelsHigh())} {}

  int pixelsWide() const override { return cairo_image_surface_get_width(surface_.get()); }
  int pixelsHigh() const override { return cairo_image_surface_get_height(surface_.get()); }

  void draw(double scale, const std::function<void(Canvas&)>& paint) override;
  std::optional<Color> colorAt(int x, int y) const override;

  void setSize(Size points) override { size_ = points; }
  Size size() const override { return size_; }

 private:
  SurfacePtr surface_;
  Size size_;
};

void LinuxBitmap::draw(double scale, const std::function<void(Canvas&)>& paint) {
  const std::unique_ptr<cairo_t, ContextDeleter> context(cairo_create(surface_.get()));
  cairo_set_operator(context.get(), CAIRO_OPERATOR_CLEAR);
  cairo_paint(context.get());
  cairo_set_operator(context.get(), CAIRO_OPERATOR_OVER);
  cairo_scale(context.get(), scale, scale);
  CairoCanvas canvas(context.get(), {pixelsWide() / scale, pixelsHigh() / scale});
  paint(canvas);
}

// CAIRO_FORMAT_ARGB32 stores premultiplied colours.
std::optional<Color> LinuxBitmap::colorAt(int x, int y) const {
  if (x < 0 || y < 0 || x >= pixelsWide() || y >= pixelsHigh()) return std::nullopt;
  cairo_surface_flush(surface_.get());
  const auto offset =
      static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface_.get()) +
      x * static_cast<std::ptrdiff_t>(sizeof(std::uint32_t));
  std::uint32_t pixel = 0;
  std::memcpy(&pixel, cairo_image_surface_get_data(surface_.get()) + offset, sizeof pixel);
  const auto byte = [pixel](int shift) { return static_cast<double>((pixel >> shift) & 0xFFU); };
  const double alpha = byte(24);
  if (alpha == 0) return Color{0, 0, 0, 0};
  return Color{byte(16) / alpha, byte(8) / alpha, byte(0) / alpha, alpha / 255};
}

class LinuxImage final : public Image {
 public:
  explicit LinuxImage(Size size) : size_(size) {}

  Size size() const override { return size_; }
  void addRepresentation(std::shared_ptr<Bitmap> bitmap) override {
    representations_.push_back(std::move(bitmap));
  }
  std::vector<std::shared_ptr<Bitmap>> representations() const override { return representations_; }

  void setTemplate(bool isTemplate) override { template_ = isTemplate; }
  bool isTemplate() const override { return template_; }

 private:
  Size size_;
  bool template_ = false;
  std::vector<std::shared_ptr<Bitmap>> representations_;
};

}  // namespace

std::shared_ptr<Bitmap> LinuxImaging::makeBitmap(int pixelsWide, int pixelsHigh) {
  SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixelsWide, pixelsHigh));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  return std::make_shared<LinuxBitmap>(std::move(surface));
}

std::shared_ptr<Image> LinuxImaging::makeImage(Size points) {
  return std::make_shared<LinuxImage>(points);
}

}  // namespace navora
