#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navora {

// Decides the language of the native interface and translates its texts. Texts are written in
// Russian in the code and serve as keys into the catalogs; what has no translation shows in
// Russian.
//
// The process has one interface language: `requested` and `detected` are what the service last
// reported. Main thread only.
class DesktopLocale {
 public:
  // Codes of the languages that the interface can be shown in; the first is the source language.
  static const std::vector<std::string>& supported();

  // The user's setting on the service; "system" follows the operating system.
  static inline std::string requested = "system";
  // The language that the service detected for the user, if it said so.
  static inline std::optional<std::string> detected;

  // Tells where the system's preferred languages (asked at every use) and the catalog resource
  // (read once, at the first translation after this call) come from. Without it there are none.
  static void configure(std::function<std::vector<std::string>()> preferredLanguages,
                        std::function<std::optional<std::string>()> catalogResource);

  // The supported code for a language tag, whatever its region: every Portuguese is Brazilian here.
  static std::optional<std::string> normalize(std::string_view tag);

  // An explicit setting wins, then the first usable preferred language, then the detected one, then
  // the source language.
  static std::string resolve(std::string_view requestedLocale,
                             const std::vector<std::string>& preferred,
                             const std::optional<std::string>& detectedLocale);

  // The language to show now.
  static std::string current();

  // The text for `key` in the current language, every "{name}" replaced by its parameter.
  static std::string translate(std::string_view key,
                               const std::map<std::string, std::string>& parameters = {});

  // Checks the policy; prints a line on success and traps on failure.
  static void selfTest();
};

// Shorthand for `DesktopLocale::translate`: every visible native text passes through it.
std::string L(std::string_view key, const std::map<std::string, std::string>& parameters = {});

}  // namespace navora
