#include "support/Date.h"

#include <locale>

#include <date/date.h>

namespace navora {

std::string iso8601(Date date) {
  const auto seconds = date::floor<std::chrono::seconds>(date);
  return date::format(std::locale::classic(), "%FT%TZ", seconds);
}

}  // namespace navora
