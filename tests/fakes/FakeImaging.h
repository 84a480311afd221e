#pragma once

#include <functional>
#include <utility>

#include "fakes/FakeCanvas.h"
#include "platform/Image.h"

namespace navora {

// Records what was painted. A pixel has the colour given by `pixel` or, without that function, the
// colour painted at its centre: without antialiasing, gradients in their first colour, lines with
// round caps.
class FakeBitmap final : public Bitmap {
 public:
  using Pixel = std::function<std::optional<Color>(int x, int y)>;

  FakeBitmap(int wide, int high, Pixel pixel)
      : wide_(wide),
        high_(high),
        size_{static_cast<double>(wide), static_cast<double>(high)},
        pixel_(std::move(pixel)) {}

  FakeCanvas canvas;
  // The scale of the last draw().
  double scale = 1;

  int pixelsWide() const override { return wide_; }
  int pixelsHigh() const override { return high_; }
  void draw(double newScale, const std::function<void(Canvas&)>& paint) override;
  std::optional<Color> colorAt(int x, int y) const override;
  void setSize(Size points) override { size_ = points; }
  Size size() const override { return size_; }

 private:
  Color paintedAt(Point point) const;

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
  // Used by bitmaps created from now on.
  FakeBitmap::Pixel pixel;

  std::shared_ptr<Bitmap> makeBitmap(int wide, int high) override {
    return hasMemory ? std::make_shared<FakeBitmap>(wide, high, pixel) : nullptr;
  }
  std::shared_ptr<Image> makeImage(Size points) override {
    return std::make_shared<FakeImage>(points, keepsTemplateFlag);
  }
};

}  // namespace navora
