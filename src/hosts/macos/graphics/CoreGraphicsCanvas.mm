#include "hosts/macos/graphics/CoreGraphicsCanvas.h"

#include <algorithm>

#include "hosts/macos/system/AppKitConversions.h"

namespace navora {

namespace {

NSBezierPath* roundedRectangle(const Rectangle& rectangle, double radius) {
  const double fitting = std::min(radius, std::min(rectangle.width, rectangle.height) / 2);
  return [NSBezierPath bezierPathWithRoundedRect:toNSRect(rectangle)
                                         xRadius:fitting
                                         yRadius:fitting];
}

void stroke(NSBezierPath* path, Color color, const StrokeStyle& style) {
  path.lineWidth = style.lineWidth;
  path.lineCapStyle = style.roundCaps ? NSLineCapStyleRound : NSLineCapStyleButt;
  path.lineJoinStyle = style.roundJoins ? NSLineJoinStyleRound : NSLineJoinStyleMiter;
  [toNSColor(color) setStroke];
  [path stroke];
}

NSGradient* toNSGradient(const LinearGradient& gradient) {
  NSMutableArray<NSColor*>* colors = [NSMutableArray array];
  std::vector<CGFloat> locations;
  for (const LinearGradient::Stop& stop : gradient.stops) {
    [colors addObject:toNSColor(stop.color)];
    locations.push_back(stop.location);
  }
  return [[NSGradient alloc] initWithColors:colors
                                atLocations:locations.data()
                                 colorSpace:[NSColorSpace sRGBColorSpace]];
}

}  // namespace

void CoreGraphicsCanvas::fillRoundedRectangle(const Rectangle& rectangle, double radius,
                                              const LinearGradient& gradient) {
  [toNSGradient(gradient) drawInBezierPath:roundedRectangle(rectangle, radius)
                                     angle:gradient.angle];
}

void CoreGraphicsCanvas::strokeRoundedRectangle(const Rectangle& rectangle, double radius,
                                                Color color, const StrokeStyle& style) {
  stroke(roundedRectangle(rectangle, radius), color, style);
}

void CoreGraphicsCanvas::fillOval(const Rectangle& rectangle, Color color) {
  [toNSColor(color) setFill];
  [[NSBezierPath bezierPathWithOvalInRect:toNSRect(rectangle)] fill];
}

void CoreGraphicsCanvas::strokePath(const Path& path, Color color, const StrokeStyle& style) {
  NSBezierPath* bezierPath = [NSBezierPath bezierPath];
  for (const auto& [kind, end, control1, control2] : path.elements()) {
    switch (kind) {
      case Path::Kind::moveTo:
        [bezierPath moveToPoint:toNSPoint(end)];
        break;
      case Path::Kind::lineTo:
        [bezierPath lineToPoint:toNSPoint(end)];
        break;
      case Path::Kind::curveTo:
        [bezierPath curveToPoint:toNSPoint(end)
                   controlPoint1:toNSPoint(control1)
                   controlPoint2:toNSPoint(control2)];
        break;
    }
  }
  stroke(bezierPath, color, style);
}

}  // namespace navora
