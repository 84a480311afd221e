#include "pages/AppearanceRules.h"

#include <regex>
#include <set>

namespace navora::driver {

namespace {

using Json = nlohmann::json;

struct Range {
  const char* key;
  double least;
  double most;
};

const std::vector<std::string> colors{"surface", "surfaceEnd",  "border",           "focus",
                                      "ink",     "caret",       "placeholderColor", "muted",
                                      "button",  "buttonHover", "buttonInk"};
const std::vector<Range> ranges{
    {"radius", 0, 48}, {"padding", 8, 48}, {"fontSize", 10, 32}, {"lineHeight", 10, 64}};

// Accepts only the notations that the script produces, fewer than the application accepts.
bool isColor(const Json& value) {
  static const std::regex hexadecimal("#[0-9a-f]{6}");
  static const std::regex functional(R"(rgba\((\d{1,3}), (\d{1,3}), (\d{1,3}), (0|0\.\d{1,4})\))");
  if (!value.is_string()) return false;
  const std::string text = value;
  if (std::regex_match(text, hexadecimal)) return true;
  std::smatch parts;
  if (!std::regex_match(text, parts, functional)) return false;
  return std::stoi(parts[1]) <= 255 && std::stoi(parts[2]) <= 255 && std::stoi(parts[3]) <= 255;
}

bool isOneOf(const Json& value, const std::set<std::string>& words) {
  return value.is_string() && words.contains(value.get<std::string>());
}

}  // namespace

std::vector<std::string> appearanceProblems(const Json& appearance) {
  if (!appearance.is_object()) return {"no object"};
  std::vector<std::string> problems;
  const auto expect = [&](bool right, const std::string& key) {
    if (!right) problems.push_back(key + ": " + appearance.value(key, Json()).dump());
  };
  const auto value = [&](const std::string& key) { return appearance.value(key, Json()); };
  expect(value("dark").is_boolean(), "dark");
  expect(isOneOf(value("theme"), {"system", "light", "dark"}), "theme");
  expect(isOneOf(value("font"), {"sans", "serif", "mono"}), "font");
  for (const std::string& key : colors)
    expect(isColor(value(key)), key);
  for (const Range& range : ranges) {
    const Json number = value(range.key);
    expect(number.is_number() && number >= range.least && number <= range.most, range.key);
  }
  // At most 200 characters; tests of long values count them in the page.
  expect(value("placeholder").is_string(), "placeholder");
  if (appearance.size() != 4 + colors.size() + ranges.size()) {
    problems.push_back("other keys: " + appearance.dump());
  }
  return problems;
}

}  // namespace navora::driver
