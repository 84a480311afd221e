#pragma once

#include <utility>
#include <variant>

#include "support/FatalError.h"

namespace navora {

// Marks a value as the error of an Expected: `return Unexpected(TransportError::timeout);`
template <class Error>
struct Unexpected {
  explicit Unexpected(Error reason) : error(std::move(reason)) {}
  Error error;
};

// Holds either a value or an error. For an operation without a result use
// Expected<std::monostate, Error>. Value and Error may be the same type.
template <class Value, class Error>
class [[nodiscard]] Expected {
 public:
  Expected(Value value) : content_(std::in_place_index<0>, std::move(value)) {}
  template <class Reason>
  Expected(Unexpected<Reason> unexpected)
      : content_(std::in_place_index<1>, std::move(unexpected.error)) {}

  bool hasValue() const { return content_.index() == 0; }
  explicit operator bool() const { return hasValue(); }

  // Accessing the alternative that is not held is a fatal error.
  const Value& value() const& { return *checked(std::get_if<0>(&content_)); }
  Value& value() & { return *checked(std::get_if<0>(&content_)); }
  Value&& value() && { return std::move(*checked(std::get_if<0>(&content_))); }
  const Error& error() const& { return *checked(std::get_if<1>(&content_)); }
  Error&& error() && { return std::move(*checked(std::get_if<1>(&content_))); }

  const Value& operator*() const& { return value(); }
  Value& operator*() & { return value(); }
  Value&& operator*() && { return std::move(*this).value(); }
  const Value* operator->() const { return &value(); }
  Value* operator->() { return &value(); }

  bool operator==(const Expected&) const = default;

 private:
  template <class Content>
  static Content* checked(Content* content) {
    if (!content)
      fatalError("An Expected does not hold the requested alternative", "Expected", __LINE__);
    return content;
  }

  std::variant<Value, Error> content_;
};

}  // namespace navora
