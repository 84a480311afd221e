#pragma once

#include <functional>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

namespace navora {

// A question that must be answered exactly once. The first answer counts and later ones are
// ignored; when nobody answers, the neutral answer is given as the last holder lets go.
//
// WebKit raises an exception when one of its completion handlers is released without having been
// called, and another when it is called twice. The objects that answer may go away while a dialog
// is still open.
template <typename... Answer>
class Question {
 public:
  Question(std::function<void(Answer...)> handler, Answer... neutral)
      : handler_(std::move(handler)), neutral_(std::move(neutral)...) {}
  Question(const Question&) = delete;
  Question& operator=(const Question&) = delete;
  ~Question() {
    if (handler_) std::apply(handler_, std::move(neutral_));
  }

  void answer(Answer... values) {
    if (const auto handler = std::exchange(handler_, nullptr)) handler(std::move(values)...);
  }

 private:
  std::function<void(Answer...)> handler_;
  std::tuple<Answer...> neutral_;
};

// `handler` as a callback that can be copied, called and dropped freely.
template <typename... Answer>
std::function<void(Answer...)> answeredOnce(std::function<void(Answer...)> handler,
                                            std::type_identity_t<Answer>... neutral) {
  auto question = std::make_shared<Question<Answer...>>(std::move(handler), std::move(neutral)...);
  return [question](Answer... values) { question->answer(std::move(values)...); };
}

}  // namespace navora
