#include "hosts/linux/installation/VersionOrder.h"

#include <algorithm>
#include <cstddef>

namespace navora {
namespace {

enum class Kind { end, letters, number };

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

struct Component {
  Kind kind = Kind::end;
  // A number has no leading zeros, so zero is empty.
  std::string_view text;
};

// Iterates over a version's components. After the last, next() keeps returning Kind::end.
class Components {
 public:
  explicit Components(std::string_view version) : rest_(version.substr(0, version.find('-'))) {}

  Component next() {
    const auto begin =
        std::ranges::find_if(rest_, [](char c) { return isDigit(c) || isLetter(c); });
    rest_.remove_prefix(static_cast<std::size_t>(begin - rest_.begin()));
    if (rest_.empty()) return {};
    const bool isNumber = isDigit(rest_.front());
    const auto end = std::ranges::find_if_not(rest_, isNumber ? isDigit : isLetter);
    std::string_view text = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
    rest_.remove_prefix(text.size());
    if (!isNumber) return {Kind::letters, text};
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return {Kind::number, text};
  }

 private:
  std::string_view rest_;
};

std::weak_ordering compareNumbers(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return a.size() <=> b.size();
  return a <=> b;
}

// Compares a component with the end of the other version.
std::weak_ordering compareWithEnd(const Component& component) {
  if (component.kind == Kind::letters) return std::weak_ordering::less;
  return component.text.empty() ? std::weak_ordering::equivalent : std::weak_ordering::greater;
}

std::weak_ordering compare(const Component& a, const Component& b) {
  if (a.kind == Kind::end && b.kind == Kind::end) return std::weak_ordering::equivalent;
  if (b.kind == Kind::end) return compareWithEnd(a);
  if (a.kind == Kind::end) return 0 <=> compareWithEnd(b);
  if (a.kind != b.kind) return a.kind <=> b.kind;
  return a.kind == Kind::number ? compareNumbers(a.text, b.text) : a.text <=> b.text;
}

}  // namespace

std::weak_ordering compareVersions(std::string_view a, std::string_view b) {
  Components left(a);
  Components right(b);
  while (true) {
    const Component fromLeft = left.next();
    const Component fromRight = right.next();
    if (const auto order = compare(fromLeft, fromRight); order != 0) return order;
    if (fromLeft.kind == Kind::end && fromRight.kind == Kind::end)
      return std::weak_ordering::equivalent;
  }
}

}  // namespace navora
