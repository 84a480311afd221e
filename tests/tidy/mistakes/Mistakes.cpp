// Planted for the test that the checks can fail.
#include "Mistakes.h"

#include <string>
#include <utility>
#include <vector>

namespace navora {

std::string usedAfterMove(std::string text) {
  std::vector<std::string> texts;
  texts.push_back(std::move(text));
  return text;
}

std::string unbraced(const std::string& text) {
  if (text.empty())
    return std::string("A text that does not fit into the line of the return statement, as the ") +
           "rule asks for";
  return text;
}

std::size_t copied(const std::vector<std::string>& texts) {
  std::size_t length = 0;
  for (const auto text : texts)
    length += text.size();
  return length;
}

}  // namespace navora
