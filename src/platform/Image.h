#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Canvas.h"
#include "platform/Color.h"
#include "platform/Geometry.h"

namespace navora {

// An RGBA bitmap with 8 bits per component.
class Bitmap {
 public:
  virtual ~Bitmap() = default;

  virtual int pixelsWide() const = 0;
  virtual int pixelsHigh() const = 0;

  // Clears every pixel to transparent, then calls `paint` with a canvas of `scale` pixels per
  // point.
  virtual void draw(double scale, const std::function<void(Canvas&)>& paint) = 0;
  // Returns the pixel's colour, not premultiplied, or nullopt outside the bitmap. y grows downwards
  // from the top row.
  virtual std::optional<Color> colorAt(int x, int y) const = 0;

  // The size at which the bitmap is shown, in points; initially its size in pixels.
  virtual void setSize(Size points) = 0;
  virtual Size size() const = 0;
};

// An image with one bitmap per resolution.
class Image {
 public:
  virtual ~Image() = default;

  virtual Size size() const = 0;
  virtual void addRepresentation(std::shared_ptr<Bitmap> bitmap) = 0;
  virtual std::vector<std::shared_ptr<Bitmap>> representations() const = 0;

  // A template image is an alpha mask; whatever displays it chooses the colour.
  virtual void setTemplate(bool isTemplate) = 0;
  virtual bool isTemplate() const = 0;
};

// Creates bitmaps and images. Needs no display.
class Imaging {
 public:
  virtual ~Imaging() = default;

  // Returns null if memory cannot be allocated.
  virtual std::shared_ptr<Bitmap> makeBitmap(int pixelsWide, int pixelsHigh) = 0;
  virtual std::shared_ptr<Image> makeImage(Size points) = 0;
};

}  // namespace navora
