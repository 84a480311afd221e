// Planted for the test that the checks can fail.
#include <string>
#include <utility>

std::string lengthened(std::string text) {
  std::string moved = std::move(text);
  return moved + text;
}
