#include "locale/DesktopLocale.h"

#include <algorithm>
#include <utility>

#include "support/FatalError.h"
#include "support/Json.h"
#include "support/SelfTest.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view followSystem = "system";

// Maps a language code to a map from source text to translation.
using Catalogs =
    std::map<std::string, std::map<std::string, std::string, std::less<>>, std::less<>>;

// Returns the catalogs, or an empty map if the resource does not have their structure. Values that
// are not strings are skipped, so that their keys are shown instead.
Catalogs readCatalogs(const std::function<std::optional<std::string>()>& source) {
  const auto resource = source ? source() : std::nullopt;
  const auto json = resource ? parseJson(*resource) : std::nullopt;
  if (!json || !json->is_object()) return {};

  Catalogs catalogs;
  for (const auto& [locale, texts] : json->items()) {
    if (!texts.is_object()) return {};
    auto& catalog = catalogs[locale];
    for (const auto& [key, text] : texts.items())
      if (text.is_string()) catalog.emplace(key, text.get<std::string>());
  }
  return catalogs;
}

struct Sources {
  std::function<std::vector<std::string>()> preferredLanguages;
  std::function<std::optional<std::string>()> catalogResource;
  std::function<std::optional<std::string>()> desktopWords;
  std::optional<Catalogs> catalogs;
};

Sources& sources() {
  static Sources instance;
  return instance;
}

const Catalogs& catalogs() {
  auto& shared = sources();
  if (!shared.catalogs) {
    shared.catalogs = readCatalogs(shared.catalogResource);
    for (auto& [locale, words] : readCatalogs(shared.desktopWords)) {
      auto& catalog = (*shared.catalogs)[locale];
      for (auto& [key, text] : words)
        catalog.insert_or_assign(key, std::move(text));
    }
  }
  return *shared.catalogs;
}

std::string_view lookUp(const std::string& locale, std::string_view key) {
  const auto catalog = catalogs().find(locale);
  if (catalog == catalogs().end()) return key;
  const auto text = catalog->second.find(key);
  return text == catalog->second.end() ? key : std::string_view(text->second);
}

// Replaces the placeholders in one pass over the text, so that the values stay as they are.
std::string substituted(std::string_view text,
                        const std::map<std::string, std::string>& parameters) {
  std::string result;
  while (!text.empty()) {
    const auto end = text.front() == '{' ? text.find('}') : std::string_view::npos;
    const auto parameter = end == std::string_view::npos
                               ? parameters.end()
                               : parameters.find(std::string(text.substr(1, end - 1)));
    if (parameter == parameters.end()) {
      result += text.front();
      text.remove_prefix(1);
    } else {
      result += parameter->second;
      text.remove_prefix(end + 1);
    }
  }
  return result;
}

void require(bool condition) {
  if (!condition) preconditionFailure();
}

}  // namespace

const std::vector<std::string>& DesktopLocale::supported() {
  static const std::vector<std::string> codes = {"ru", "en", "es", "pt-BR", "de", "fr", "ja"};
  return codes;
}

void DesktopLocale::configure(std::function<std::vector<std::string>()> preferredLanguages,
                              std::function<std::optional<std::string>()> catalogResource,
                              std::function<std::optional<std::string>()> desktopWords) {
  sources() = {std::move(preferredLanguages), std::move(catalogResource), std::move(desktopWords),
               std::nullopt};
}

std::optional<std::string> DesktopLocale::normalize(std::string_view tag) {
  const std::string folded = lowercased(replaceAll(tag, "_", "-"));
  const auto begin = folded.find_first_not_of('-');
  if (begin == std::string::npos) return std::nullopt;
  std::string language = folded.substr(begin, folded.find('-', begin) - begin);
  if (language == "pt") return "pt-BR";
  if (std::ranges::find(supported(), language) == supported().end()) return std::nullopt;
  return language;
}

std::string DesktopLocale::resolve(std::string_view requestedLocale,
                                   const std::vector<std::string>& preferred,
                                   const std::optional<std::string>& detectedLocale) {
  if (requestedLocale != followSystem)
    if (auto explicitChoice = normalize(requestedLocale)) return *explicitChoice;
  for (const auto& language : preferred)
    if (auto usable = normalize(language)) return *usable;
  if (detectedLocale)
    if (auto usable = normalize(*detectedLocale)) return *usable;
  return supported().front();
}

std::string DesktopLocale::current() {
  const auto& preferred = sources().preferredLanguages;
  return resolve(requested, preferred ? preferred() : std::vector<std::string>{}, detected);
}

std::string DesktopLocale::translate(std::string_view key,
                                     const std::map<std::string, std::string>& parameters) {
  return substituted(lookUp(current(), key), parameters);
}

void DesktopLocale::selfTest() {
  require(normalize("pt-PT") == "pt-BR");
  require(resolve("de", {"ja"}, std::nullopt) == "de");
  require(resolve("system", {"zz"}, std::nullopt) == "ru");
  SelfTest::pass("native locale policy (3 checks)");
}

std::string L(std::string_view key, const std::map<std::string, std::string>& parameters) {
  return DesktopLocale::translate(key, parameters);
}

}  // namespace navora
