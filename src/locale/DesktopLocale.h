#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navora {

// Selects the language of the native interface and translates its texts. The code contains the
// Russian texts, which are the keys of the catalogs; a text without a translation is shown in
// Russian.
//
// The process has one interface language, derived from `requested` and `detected`, which hold the
// values last reported by the service. Main thread only.
class DesktopLocale {
 public:
  // Returns the codes of the interface languages; the first is the source language.
  static const std::vector<std::string>& supported();

  // The user's setting in the service; "system" follows the operating system.
  static inline std::string requested = "system";
  // The language that the service detected for the user, if reported.
  static inline std::optional<std::string> detected;

  // Sets the sources of the system's preferred languages, which is called at every use, and of the
  // catalog resource, which is read once, at the first translation after this call. The desktop's
  // own words, a resource of the same structure that may have fewer texts, take the place of those
  // in the catalog. Before the first call there are neither preferred languages nor catalogs.
  static void configure(std::function<std::vector<std::string>()> preferredLanguages,
                        std::function<std::optional<std::string>()> catalogResource,
                        std::function<std::optional<std::string>()> desktopWords = {});

  // Returns the supported code for a language tag, ignoring its region (every Portuguese tag
  // becomes pt-BR), or nullopt if the language is not supported.
  static std::optional<std::string> normalize(std::string_view tag);

  // Returns the language to use: an explicit setting if supported, else the first supported
  // preferred language, else the detected one, else the source language.
  static std::string resolve(std::string_view requestedLocale,
                             const std::vector<std::string>& preferred,
                             const std::optional<std::string>& detectedLocale);

  // Returns the current interface language.
  static std::string current();

  // Returns the text for `key` in the current language, with each "{name}" replaced by the
  // parameter of that name. Names in the values of parameters are not replaced.
  static std::string translate(std::string_view key,
                               const std::map<std::string, std::string>& parameters = {});

  // Checks the rules: prints one line if they hold, otherwise traps.
  static void selfTest();
};

// Shorthand for DesktopLocale::translate(), used for every visible native text.
std::string L(std::string_view key, const std::map<std::string, std::string>& parameters = {});

}  // namespace navora
