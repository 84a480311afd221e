#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace navora {

// The notifications that the service shows for this application, by the service's numbers. Beyond
// its capacity it forgets the oldest.
class ShownNotifications {
 public:
  explicit ShownNotifications(std::size_t capacity) : capacity_(capacity) {}

  // Replaces entries with the same number or the same identifier.
  void add(std::uint32_t number, const std::string& identifier, const std::string& url);
  void remove(std::uint32_t number);
  void clear() { entries_.clear(); }

  // Returns the numbers of all entries, the oldest first.
  std::vector<std::uint32_t> numbers() const;
  std::optional<std::uint32_t> numberOf(const std::string& identifier) const;
  std::optional<std::string> urlOf(std::uint32_t number) const;

 private:
  struct Entry {
    std::uint32_t number;
    std::string identifier;
    std::string url;
  };

  std::size_t capacity_;
  std::deque<Entry> entries_;
};

}  // namespace navora
