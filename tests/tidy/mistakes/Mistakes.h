#pragma once

namespace navora {

class Shape {
 public:
  virtual ~Shape() = default;
  virtual int corners() const = 0;
};

class Square final : public Shape {
 public:
  virtual int corners() const { return 4; }
};

}  // namespace navora
