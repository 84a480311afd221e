#include "unit/locale/CatalogCheck.h"

#include <algorithm>
#include <array>
#include <regex>
#include <string_view>

#include "support/Text.h"
#include "unit/locale/SourceTexts.h"

namespace navora::test {
namespace {

using Problems = std::vector<std::string>;

std::set<std::string> placeholders(const std::string& text) {
  static const std::regex placeholder(R"(\{[A-Za-z_][A-Za-z0-9_]*\})");
  return {std::sregex_token_iterator(text.begin(), text.end(), placeholder),
          std::sregex_token_iterator()};
}

bool hasOuterWhiteSpace(const std::string& text) {
  return std::ranges::any_of(split(text, '\n'),
                             [](const std::string& line) { return trimmed(line) != line; });
}

bool containsAny(const std::string& text, const auto& parts) {
  return std::ranges::any_of(
      parts, [&text](std::string_view part) { return text.find(part) != std::string::npos; });
}

bool hasTypewriterMarks(const std::string& text) {
  return containsAny(text, std::array<std::string_view, 3>{"'", "\"", "..."});
}

// French puts a no-break space inside quotation marks and before these marks.
bool hasBreakableMark(const std::string& text) {
  return containsAny(text, std::array<std::string_view, 6>{" :", " ;", " !", " ?", " »", "« "});
}

void append(Problems& problems, const Problems& others) {
  problems.insert(problems.end(), others.begin(), others.end());
}

Problems translationProblems(const std::string& locale, const std::string& key,
                             const std::string& text) {
  Problems problems;
  const auto reportIf = [&](bool wrong, const std::string& what) {
    if (wrong) problems.push_back(locale + ": " + what + ": " + key);
  };
  reportIf(text.empty(), "empty");
  reportIf(placeholders(text) != placeholders(key), "other placeholders");
  reportIf(std::ranges::count(text, '\n') != std::ranges::count(key, '\n'), "other line breaks");
  reportIf(hasCyrillic(text), "Cyrillic");
  reportIf(hasOuterWhiteSpace(text), "outer white space");
  reportIf(hasTypewriterMarks(text), "typewriter marks");
  reportIf(locale == "fr" && hasBreakableMark(text), "breakable mark");
  return problems;
}

// Returns the errors of the texts that there are, of which each must be one of `keys`.
Problems problemsOfOne(const std::string& locale, const Json& catalog,
                       const std::set<std::string>& keys) {
  if (!catalog.is_object()) return {locale + ": no object"};
  Problems problems;
  for (const auto& [key, text] : catalog.items()) {
    if (!keys.contains(key)) {
      problems.push_back(locale + ": unused: " + key);
    } else if (!text.is_string()) {
      problems.push_back(locale + ": no text: " + key);
    } else {
      append(problems, translationProblems(locale, key, text.get<std::string>()));
    }
  }
  return problems;
}

}  // namespace

Problems catalogProblems(const Json& catalogs, const std::vector<std::string>& locales,
                         const std::set<std::string>& keys) {
  if (!catalogs.is_object()) return {"the resource is no object"};
  Problems problems;
  for (const auto& locale : locales)
    if (!catalogs.contains(locale)) problems.push_back(locale + ": no catalog");
  for (const auto& [locale, catalog] : catalogs.items()) {
    if (std::ranges::find(locales, locale) == locales.end()) {
      problems.push_back(locale + ": unsupported");
      continue;
    }
    for (const auto& key : keys) {
      if (catalog.is_object() && !catalog.contains(key))
        problems.push_back(locale + ": missing: " + key);
    }
    append(problems, problemsOfOne(locale, catalog, keys));
  }
  return problems;
}

Problems desktopWordProblems(const Json& words, const Json& catalogs) {
  if (!words.is_object()) return {"the resource is no object"};
  Problems problems;
  for (const auto& [locale, texts] : words.items()) {
    if (!catalogs.contains(locale)) {
      problems.push_back(locale + ": unsupported");
      continue;
    }
    const Json& catalog = catalogs[locale];
    std::set<std::string> keys;
    for (const auto& [key, text] : catalog.items())
      keys.insert(key);
    append(problems, problemsOfOne(locale, texts, keys));
    for (const auto& [key, text] : texts.items())
      if (text == catalog.value(key, Json())) problems.push_back(locale + ": needless: " + key);
  }
  return problems;
}

}  // namespace navora::test
