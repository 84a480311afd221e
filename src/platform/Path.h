#pragma once

#include <vector>

#include "platform/Geometry.h"

namespace navora {

// Lines and cubic curves; every `moveTo` begins another subpath, and the first element is one.
class Path {
 public:
  enum class Kind { moveTo, lineTo, curveTo };
  struct Element {
    Kind kind;
    Point end;
    // Of a curve.
    Point control1{};
    Point control2{};
    bool operator==(const Element&) const = default;
  };

  Path& moveTo(Point point) { return append({Kind::moveTo, point}); }
  Path& lineTo(Point point) { return append({Kind::lineTo, point}); }
  Path& curveTo(Point end, Point control1, Point control2) {
    return append({Kind::curveTo, end, control1, control2});
  }

  const std::vector<Element>& elements() const { return elements_; }

  bool operator==(const Path&) const = default;

 private:
  Path& append(Element element) {
    elements_.push_back(element);
    return *this;
  }

  std::vector<Element> elements_;
};

}  // namespace navora
