#pragma once

#include <functional>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

namespace navora {

// Calls a handler exactly once: with the first answer, or with the neutral one if it is destroyed
// unanswered. Further answers are ignored.
//
// WebKit raises an exception if one of its completion handlers is released uncalled or called
// twice, and the object that answers may be destroyed while its dialog is still open.
template <typename... Answer>
class OnceCallback {
 public:
  OnceCallback(std::function<void(Answer...)> handler, Answer... neutral)
      : handler_(std::move(handler)), neutral_(std::move(neutral)...) {}
  OnceCallback(const OnceCallback&) = delete;
  OnceCallback& operator=(const OnceCallback&) = delete;
  ~OnceCallback() {
    if (handler_) std::apply(handler_, std::move(neutral_));
  }

  void answer(Answer... values) {
    if (const auto handler = std::exchange(handler_, nullptr)) handler(std::move(values)...);
  }

 private:
  std::function<void(Answer...)> handler_;
  std::tuple<Answer...> neutral_;
};

// Wraps `handler` in a callback that may be copied, called and destroyed freely; its copies share
// one OnceCallback.
template <typename... Answer>
std::function<void(Answer...)> onceCallback(std::function<void(Answer...)> handler,
                                            std::type_identity_t<Answer>... neutral) {
  auto once = std::make_shared<OnceCallback<Answer...>>(std::move(handler), std::move(neutral)...);
  return [once](Answer... values) { once->answer(std::move(values)...); };
}

}  // namespace navora
