#include "hosts/macos/graphics/MacImaging.h"

#include <utility>

#include "hosts/macos/graphics/CoreGraphicsCanvas.h"
#include "hosts/macos/system/AppKitConversions.h"

namespace navora {

namespace {

constexpr NSInteger bitsPerSample = 8;
constexpr NSInteger samplesPerPixel = 4;

// Zero bytes per row and bits per pixel let the system choose; without planes it allocates and owns
// the pixels.
NSBitmapImageRep* _Nullable makeRepresentation(int pixelsWide, int pixelsHigh) {
  return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                 pixelsWide:pixelsWide
                                                 pixelsHigh:pixelsHigh
                                              bitsPerSample:bitsPerSample
                                            samplesPerPixel:samplesPerPixel
                                                   hasAlpha:YES
                                                   isPlanar:NO
                                             colorSpaceName:NSDeviceRGBColorSpace
                                                bytesPerRow:0
                                               bitsPerPixel:0];
}

// Makes `context` the current one until this object is destroyed.
class CurrentContext {
 public:
  explicit CurrentContext(NSGraphicsContext* context) {
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = context;
  }
  ~CurrentContext() { [NSGraphicsContext restoreGraphicsState]; }
  CurrentContext(const CurrentContext&) = delete;
  CurrentContext& operator=(const CurrentContext&) = delete;
};

void scaleCurrentContext(double scale) {
  NSAffineTransform* transform = [NSAffineTransform transform];
  [transform scaleXBy:scale yBy:scale];
  [transform concat];
}

class MacBitmap final : public Bitmap {
 public:
  explicit MacBitmap(NSBitmapImageRep* representation) : representation_(representation) {}

  int pixelsWide() const override { return static_cast<int>(representation_.pixelsWide); }
  int pixelsHigh() const override { return static_cast<int>(representation_.pixelsHigh); }

  void draw(double scale, const std::function<void(Canvas&)>& paint) override;
  std::optional<Color> colorAt(int x, int y) const override;

  void setSize(Size points) override {
    representation_.size = NSMakeSize(points.width, points.height);
  }
  Size size() const override { return {representation_.size.width, representation_.size.height}; }

  NSBitmapImageRep* representation() const { return representation_; }

 private:
  NSBitmapImageRep* representation_;
};

void MacBitmap::draw(double scale, const std::function<void(Canvas&)>& paint) {
  NSGraphicsContext* context =
      [NSGraphicsContext graphicsContextWithBitmapImageRep:representation_];
  if (context == nil) return;
  const CurrentContext current(context);
  context.imageInterpolation = NSImageInterpolationHigh;
  [NSColor.clearColor setFill];
  NSRectFillUsingOperation(NSMakeRect(0, 0, pixelsWide(), pixelsHigh()),
                           NSCompositingOperationCopy);
  scaleCurrentContext(scale);
  CoreGraphicsCanvas canvas;
  paint(canvas);
}

std::optional<Color> MacBitmap::colorAt(int x, int y) const {
  if (x < 0 || y < 0 || x >= pixelsWide() || y >= pixelsHigh()) return std::nullopt;
  NSColor* color =
      [[representation_ colorAtX:x y:y] colorUsingColorSpace:NSColorSpace.deviceRGBColorSpace];
  if (color == nil) return std::nullopt;
  return Color{color.redComponent, color.greenComponent, color.blueComponent, color.alphaComponent};
}

class MacImage final : public Image {
 public:
  explicit MacImage(Size size)
      : image_([[NSImage alloc] initWithSize:NSMakeSize(size.width, size.height)]) {}

  Size size() const override { return {image_.size.width, image_.size.height}; }
  // `bitmap` must be made by MacImaging.
  void addRepresentation(std::shared_ptr<Bitmap> bitmap) override {
    [image_ addRepresentation:static_cast<const MacBitmap&>(*bitmap).representation()];
    representations_.push_back(std::move(bitmap));
  }
  std::vector<std::shared_ptr<Bitmap>> representations() const override { return representations_; }

  // Called as a method, because `image.template` is not C++: `template` is a keyword.
  void setTemplate(bool isTemplate) override { [image_ setTemplate:isTemplate]; }
  bool isTemplate() const override { return [image_ isTemplate]; }

  NSImage* image() const { return image_; }

 private:
  NSImage* image_;
  std::vector<std::shared_ptr<Bitmap>> representations_;
};

}  // namespace

std::shared_ptr<Bitmap> MacImaging::makeBitmap(int pixelsWide, int pixelsHigh) {
  NSBitmapImageRep* representation = makeRepresentation(pixelsWide, pixelsHigh);
  return representation == nil ? nullptr : std::make_shared<MacBitmap>(representation);
}

std::shared_ptr<Image> MacImaging::makeImage(Size points) {
  return std::make_shared<MacImage>(points);
}

NSImage* nsImage(const Image& image) {
  return static_cast<const MacImage&>(image).image();
}

}  // namespace navora
