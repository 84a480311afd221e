#pragma once

#include <functional>
#include <utility>

#include "fakes/RecordingCanvas.h"
#include "platform/Image.h"

namespace navora {

// Remembers what was painted. Its pixels are what `pixel` says: by default as if the mark of an
// image filled all but the outermost ones.
class FakeBitmap final : public Bitmap {
 public:
  using Pixel = std::function<std::optional<Color>(int x, int y)>;

  FakeBitmap(int wide, int high, Pixel pixel)
      : wide_(wide),
        high_(high),
        size_{static_cast<double>(wide), static_cast<double>(high)},
        pixel_(std::move(pixel)) {}

  RecordingCanvas canvas;
  double scale = 0;

  int pixelsWide() const override { return wide_; }
  int pixelsHigh() const override { return high_; }
  void draw(double newScale, const std::function<void(Canvas&)>& paint) override {
    scale = newScale;
    canvas = {};
    paint(canvas);
  }
  std::optional<Color> colorAt(int x, int y) const override {
    if (pixel_) return pixel_(x, y);
    const bool edge = x == 0 || y == 0 || x == wide_ - 1 || y == high_ - 1;
    return Color{0, 0, 0, edge || canvas.order.empty() ? 0.0 : 1.0};
  }
  void setSize(Size points) override { size_ = points; }
  Size size() const override { return size_; }

 private:
  int wide_;
  int high_;
  Size size_;
  Pixel pixel_;
};

class FakeImage final : public Image {
 public:
  FakeImage(Size size, bool keepsTemplateFlag)
      : size_(size), keepsTemplateFlag_(keepsTemplateFlag) {}

  Size size() const override { return size_; }
  void addRepresentation(std::shared_ptr<Bitmap> bitmap) override {
    representations_.push_back(std::move(bitmap));
  }
  std::vector<std::shared_ptr<Bitmap>> representations() const override { return representations_; }
  void setTemplate(bool isTemplate) override { template_ = isTemplate && keepsTemplateFlag_; }
  bool isTemplate() const override { return template_; }

 private:
  Size size_;
  bool keepsTemplateFlag_;
  bool template_ = false;
  std::vector<std::shared_ptr<Bitmap>> representations_;
};

class FakeImaging final : public Imaging {
 public:
  bool hasMemory = true;
  bool keepsTemplateFlag = true;
  // Of the bitmaps made from now on.
  FakeBitmap::Pixel pixel;

  std::shared_ptr<Bitmap> makeBitmap(int wide, int high) override {
    return hasMemory ? std::make_shared<FakeBitmap>(wide, high, pixel) : nullptr;
  }
  std::shared_ptr<Image> makeImage(Size points) override {
    return std::make_shared<FakeImage>(points, keepsTemplateFlag);
  }
};

}  // namespace navora
