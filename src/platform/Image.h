#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Canvas.h"
#include "platform/Color.h"
#include "platform/Geometry.h"

namespace navora {

// Pixels of red, green, blue and alpha, 8 bits each.
class Bitmap {
 public:
  virtual ~Bitmap() = default;

  virtual int pixelsWide() const = 0;
  virtual int pixelsHigh() const = 0;

  // Clears every pixel to full transparency, then lets `paint` draw with `scale` pixels per unit.
  virtual void draw(double scale, const std::function<void(Canvas&)>& paint) = 0;
  // Not premultiplied; y grows downwards from the top row. None outside.
  virtual std::optional<Color> colorAt(int x, int y) const = 0;

  // How large the bitmap counts, in points; as many as it has pixels until set.
  virtual void setSize(Size points) = 0;
  virtual Size size() const = 0;
};

// A picture made of bitmaps, each for another resolution.
class Image {
 public:
  virtual ~Image() = default;

  virtual Size size() const = 0;
  virtual void addRepresentation(std::shared_ptr<Bitmap> bitmap) = 0;
  virtual std::vector<std::shared_ptr<Bitmap>> representations() const = 0;

  // Of a template only the alpha counts: who shows it chooses the colour.
  virtual void setTemplate(bool isTemplate) = 0;
  virtual bool isTemplate() const = 0;
};

// Makes pictures. Needs no display.
class Imaging {
 public:
  virtual ~Imaging() = default;

  // Null if the memory for it cannot be had.
  virtual std::shared_ptr<Bitmap> makeBitmap(int pixelsWide, int pixelsHigh) = 0;
  virtual std::shared_ptr<Image> makeImage(Size points) = 0;
};

}  // namespace navora
