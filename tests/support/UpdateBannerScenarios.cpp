#include "tests/support/UpdateBannerScenarios.h"

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

using Scenario = UpdateBannerScenario;
using State = UpdateBannerState;
using Action = UpdateBannerState::Action;

constexpr auto indeterminate = UpdateBannerProgress::indeterminate();
constexpr const char* willRestart = "Обновление установится, и приложение перезапустится.";
constexpr const char* canKeepWorking = "Можно продолжать работу.";
constexpr const char* install = "Обновить приложение";
constexpr const char* later = "Позже";
constexpr const char* close = "Закрыть";

std::vector<Scenario> makeScenarios() {
  return {
      {.name = "checking",
       .makeState = [](const Action& action) { return State::Checking{.cancel = action}; },
       .shown = {.heading = "Проверяем обновления…",
                 .detail = "Это займёт несколько секунд.",
                 .secondary = "Отмена",
                 .progress = indeterminate}},
      {.name = "information-only",
       .makeState =
           [](const Action& action) {
             return State::InformationOnly{.learnMore = action, .later = action};
           },
       .shown = {.heading = "Доступна новая версия",
                 .detail = "Для этой версии нужна отдельная установка.",
                 .primary = "Подробнее",
                 .secondary = later}},
      {.name = "offer",
       .makeState =
           [](const Action& action) {
             // The close button is visible only if it has an action.
             return State::Offer{.displayVersion = Scenario::displayVersion,
                                 .install = action,
                                 .postponeByHour = action,
                                 .ignore = action,
                                 .postponeUntilTomorrow = action ? action : [] {}};
           },
       .shown = {.heading = "Доступна Навора {version}",
                 .detail = willRestart,
                 .primary = install,
                 .secondary = "Отложить на 1 час",
                 .tertiary = "Не показывать больше",
                 .close = true}},
      {.name = "resumed",
       .makeState =
           [](const Action& action) {
             return State::Resumed{
                 .displayVersion = Scenario::displayVersion, .install = action, .later = action};
           },
       .shown = {.heading = "Доступна Навора {version}",
                 .detail = willRestart,
                 .primary = install,
                 .secondary = later}},
      {.name = "downloading",
       .makeState = [](const Action& action) { return State::Downloading{.cancel = action}; },
       .shown = {.heading = "Скачиваем обновление…",
                 .detail = canKeepWorking,
                 .secondary = "Отмена",
                 .progress = indeterminate},
       .progress = 0.4},
      {.name = "extracting",
       .makeState = [](const Action&) { return State::Extracting{}; },
       .shown = {.heading = "Готовим обновление…",
                 .detail = "Проверяем и распаковываем новую версию.",
                 .progress = indeterminate}},
      {.name = "ready",
       .makeState =
           [](const Action& action) { return State::Ready{.install = action, .later = action}; },
       .shown = {.heading = "Обновление готово",
                 .detail = "Навора перезапустится после установки.",
                 .primary = install,
                 .secondary = later}},
      {.name = "blocked",
       .makeState =
           [](const Action& action) {
             return State::Blocked{.message = DesktopLocale::translate(Scenario::blockedMessage),
                                   .tryAgain = action,
                                   .later = action};
           },
       .shown = {.heading = "Обновление готово",
                 .detail = Scenario::blockedMessage,
                 .primary = "Продолжить обновление",
                 .secondary = later}},
      {.name = "installing",
       .makeState = [](const Action&) { return State::Installing{}; },
       .shown = {.heading = "Устанавливаем обновление…",
                 .detail = "Навора сейчас перезапустится.",
                 .progress = indeterminate}},
      {.name = "up-to-date",
       .makeState =
           [](const Action& action) {
             return State::UpToDate{
                 .heading = [] { return DesktopLocale::translate(Scenario::upToDateHeading); },
                 .close = action};
           },
       .shown = {.heading = Scenario::upToDateHeading,
                 .detail = canKeepWorking,
                 .secondary = close}},
      {.name = "failed",
       .makeState = [](const Action& action) { return State::Failed{.close = action}; },
       .shown = {.heading = "Не удалось обновить Навору",
                 .detail = "Текущая версия продолжает работать. Проверьте связь и попробуйте ещё "
                           "раз.",
                 .secondary = close}},
  };
}

}  // namespace

void UpdateBannerScenario::present(UpdateBanner& banner, const Action& action) const {
  banner.present(UpdateBannerState::present(makeState(action)));
  if (progress) banner.setProgress(*progress);
}

const std::vector<UpdateBannerScenario>& updateBannerScenarios() {
  static const std::vector<UpdateBannerScenario> scenarios = makeScenarios();
  return scenarios;
}

}  // namespace navora
