#pragma once

#include <memory>
#include <utility>

namespace navora {

// Lets callbacks hold their owner weakly. The owner has a Lifetime as its last member, so that it
// ends before the others, and wraps every callback that it hands out:
//
//   door.fetch(lifetime_.guard([this](Answer answer) { show(answer); }));
//
// A wrapped callback that is called after the end of the Lifetime does nothing. It returns nothing.
class Lifetime {
 public:
  Lifetime() = default;
  // Guards belong to the object that issued them and do not follow it.
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;

  template <class Function>
  auto guard(Function function) const {
    return [token = std::weak_ptr<const Token>(token_),
            function = std::move(function)](auto&&... arguments) mutable -> void {
      if (!token.expired()) {
        function(std::forward<decltype(arguments)>(arguments)...);
      }
    };
  }

  // Silences every callback wrapped until now; later ones work.
  void renew() { token_ = std::make_shared<const Token>(); }

 private:
  struct Token {};
  std::shared_ptr<const Token> token_ = std::make_shared<const Token>();
};

}  // namespace navora
