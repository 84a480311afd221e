#pragma once

#include <memory>
#include <utility>

namespace navora {

// Disables callbacks once their owner has been destroyed. The owner declares a Lifetime as its last
// member, so that it is destroyed first, and wraps every callback that it passes on:
//
//   client.fetch(lifetime_.guard([this](Answer answer) { show(answer); }));
//
// A wrapped callback returns void and does nothing if it is called after the Lifetime was
// destroyed.
class Lifetime {
 public:
  Lifetime() = default;
  // Wrapped callbacks capture the address of their owner, so it must not move.
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;

  template <class Function>
  auto guard(Function function) const {
    return [token = std::weak_ptr<const Token>(token_),
            function = std::move(function)](auto&&... arguments) mutable -> void {
      if (!token.expired()) function(std::forward<decltype(arguments)>(arguments)...);
    };
  }

  // Disables every callback wrapped so far; those wrapped later work.
  void renew() { token_ = std::make_shared<const Token>(); }

 private:
  struct Token {};
  std::shared_ptr<const Token> token_ = std::make_shared<const Token>();
};

}  // namespace navora
