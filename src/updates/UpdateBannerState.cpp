#include "updates/UpdateBannerState.h"

#include <utility>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

using Text = UpdateBannerState::Text;
using Button = UpdateBannerPresentation::Button;

constexpr double indeterminate = -1;

Text available(std::string version) {
  return [version = std::move(version)] {
    return L("Доступна Навора {version}", {{"version", version}});
  };
}

std::string willBeInstalled() {
  return L("Обновление установится, и приложение перезапустится.");
}

std::string canKeepWorking() {
  return L("Можно продолжать работу.");
}

std::string isReady() {
  return L("Обновление готово");
}

Button install(UpdateBannerState::Action action) {
  return {[] { return L("Обновить приложение"); }, std::move(action)};
}

Button later(UpdateBannerState::Action action) {
  return {[] { return L("Позже"); }, std::move(action)};
}

Button cancel(UpdateBannerState::Action action) {
  return {[] { return L("Отмена"); }, std::move(action)};
}

Button close(UpdateBannerState::Action action) {
  return {[] { return L("Закрыть"); }, std::move(action)};
}

// Returns a presentation with these texts and nothing else.
UpdateBannerPresentation texts(Text heading, Text detail) {
  UpdateBannerPresentation presentation;
  presentation.heading = std::move(heading);
  presentation.detail = std::move(detail);
  return presentation;
}

struct Presenter {
  UpdateBannerPresentation operator()(UpdateBannerState::Checking&& state) const {
    auto shown = texts([] { return L("Проверяем обновления…"); },
                       [] { return L("Это займёт несколько секунд."); });
    shown.progress = indeterminate;
    shown.secondary = cancel(std::move(state.cancel));
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::InformationOnly&& state) const {
    auto shown = texts([] { return L("Доступна новая версия"); },
                       [] { return L("Для этой версии нужна отдельная установка."); });
    shown.primary = {[] { return L("Подробнее"); }, std::move(state.learnMore)};
    shown.secondary = later(std::move(state.later));
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::Offer&& state) const {
    auto shown = texts(available(std::move(state.displayVersion)), willBeInstalled);
    shown.primary = install(std::move(state.install));
    shown.secondary = {[] { return L("Отложить на 1 час"); }, std::move(state.postponeByHour)};
    shown.tertiary = {[] { return L("Не показывать больше"); }, std::move(state.ignore)};
    shown.close = std::move(state.postponeUntilTomorrow);
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::Resumed&& state) const {
    auto shown = texts(available(std::move(state.displayVersion)), willBeInstalled);
    shown.primary = install(std::move(state.install));
    shown.secondary = later(std::move(state.later));
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::Downloading&& state) const {
    auto shown = texts([] { return L("Скачиваем обновление…"); }, canKeepWorking);
    shown.progress = indeterminate;
    shown.secondary = cancel(std::move(state.cancel));
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::Extracting&&) const {
    auto shown = texts([] { return L("Готовим обновление…"); },
                       [] { return L("Проверяем и распаковываем новую версию."); });
    shown.progress = indeterminate;
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::Ready&& state) const {
    auto shown = texts(isReady, [] { return L("Навора перезапустится после установки."); });
    shown.primary = install(std::move(state.install));
    shown.secondary = later(std::move(state.later));
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::Blocked&& state) const {
    auto shown = texts(isReady, [message = std::move(state.message)] { return message; });
    shown.primary = {[] { return L("Продолжить обновление"); }, std::move(state.tryAgain)};
    shown.secondary = later(std::move(state.later));
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::Installing&&) const {
    auto shown = texts([] { return L("Устанавливаем обновление…"); },
                       [] { return L("Навора сейчас перезапустится."); });
    shown.progress = indeterminate;
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::UpToDate&& state) const {
    auto shown = texts(std::move(state.heading), canKeepWorking);
    shown.secondary = close(std::move(state.close));
    return shown;
  }

  UpdateBannerPresentation operator()(UpdateBannerState::Failed&& state) const {
    auto shown = texts(
        [] { return L("Не удалось обновить Навору"); },
        [] {
          return L("Текущая версия продолжает работать. Проверьте связь и попробуйте ещё раз.");
        });
    shown.secondary = close(std::move(state.close));
    return shown;
  }
};

}  // namespace

UpdateBannerPresentation UpdateBannerState::present(Value state) {
  return std::visit(Presenter(), std::move(state));
}

}  // namespace navora
