#include "hosts/linux/notifications/ShownNotifications.h"

#include <algorithm>

namespace navora {

void ShownNotifications::add(std::uint32_t number, const std::string& identifier,
                             const std::string& url) {
  std::erase_if(entries_, [&](const Entry& entry) {
    return entry.number == number || entry.identifier == identifier;
  });
  entries_.push_back({number, identifier, url});
  if (entries_.size() > capacity_) entries_.pop_front();
}

void ShownNotifications::remove(std::uint32_t number) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.number == number; });
}

std::vector<std::uint32_t> ShownNotifications::numbers() const {
  std::vector<std::uint32_t> numbers;
  for (const Entry& entry : entries_)
    numbers.push_back(entry.number);
  return numbers;
}

std::optional<std::uint32_t> ShownNotifications::numberOf(const std::string& identifier) const {
  const auto found = std::ranges::find(entries_, identifier, &Entry::identifier);
  return found == entries_.end() ? std::nullopt : std::optional(found->number);
}

std::optional<std::string> ShownNotifications::urlOf(std::uint32_t number) const {
  const auto found = std::ranges::find(entries_, number, &Entry::number);
  return found == entries_.end() ? std::nullopt : std::optional(found->url);
}

}  // namespace navora
