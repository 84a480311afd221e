#include "navigation/DesktopNavigation.h"

#include <algorithm>
#include <utility>

#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"
#include "platform/WebView.h"

namespace navora {
namespace {

constexpr std::string_view productName = "Навора";
constexpr Size promptFieldSize{320, 24};

// Returns the part after the last slash, so that a folder named by the server is not suggested.
std::string lastPathComponent(const std::string& path) {
  const auto end = path.find_last_not_of('/');
  if (end == std::string::npos) return {};
  const auto slash = path.find_last_of('/', end);
  const auto begin = slash == std::string::npos ? 0 : slash + 1;
  return path.substr(begin, end - begin + 1);
}

}  // namespace

DesktopNavigation::DesktopNavigation(Url origin, Dialogs& dialogs, const System& system,
                                     Workspace& workspace, MakeFileReplacement makeFileReplacement)
    : origin_(std::move(origin)),
      dialogs_(dialogs),
      system_(system),
      workspace_(workspace),
      makeFileReplacement_(std::move(makeFileReplacement)) {}

DesktopNavigation::~DesktopNavigation() {
  for (const auto& active : downloads_)
    active.download->setDelegate(nullptr);
}

void DesktopNavigation::decidePolicyForAction(WebView& webView, const NavigationAction& action,
                                              const ActionPolicyHandler& answer) {
  if (isOfOrigin(action.url)) return decideWithinOrigin(webView, action, answer);
  answer(NavigationPolicy::cancel);
  offerToBrowser(action);
}

void DesktopNavigation::decideWithinOrigin(WebView& webView, const NavigationAction& action,
                                           const ActionPolicyHandler& answer) {
  if (action.shouldPerformDownload) {
    debug("Downloading " + action.url->string());
    return answer(NavigationPolicy::download);
  }
  if (action.targetFrame) {
    debug("Allowed " + action.url->string());
    return answer(NavigationPolicy::allow);
  }
  // There is only one window, so requests for a new one load in it.
  debug("Loading in this window, instead of a new one: " + action.url->string());
  answer(NavigationPolicy::cancel);
  if (action.request) webView.load(*action.request);
}

void DesktopNavigation::offerToBrowser(const NavigationAction& action) {
  if (!action.url) return refuse(action.url, "the navigation has no address");
  const bool asksForNewWindow = !action.targetFrame.has_value();
  if (action.type != NavigationType::linkActivated && !asksForNewWindow) {
    return refuse(action.url,
                  "a foreign address needs a clicked link or a request for a new window");
  }
  if (!isTrusted(action.sourceFrame))
    return refuse(action.url, "a foreign address needs the service's main frame as its source");
  if (!DesktopOrigin::canOpenExternally(*action.url))
    return refuse(action.url, "the address is of a kind that other programs are not given");
  debug("Opening in another program: " + action.url->string());
  workspace_.open(*action.url);
}

NavigationPolicy DesktopNavigation::decidePolicyForResponse(const NavigationResponse& response) {
  if (!isOfOrigin(response.url)) {
    refuse(response.url, "the response is not from the service");
    return NavigationPolicy::cancel;
  }
  if (response.canShowMimeType) return NavigationPolicy::allow;
  debug("Downloading a response that cannot be shown: " + response.url->string());
  return NavigationPolicy::download;
}

void DesktopNavigation::didStartProvisionalNavigation() {
  if (onStart) onStart();
}

void DesktopNavigation::didFinishNavigation() {
  if (onLoad) onLoad();
}

void DesktopNavigation::didFailNavigation(const PlatformError& error) {
  debug("Load failed: " + error.localizedDescription + " (" + error.domain + " " +
        std::to_string(error.code) + ")");
  if (error.code == PlatformError::cancelledCode) return;
  if (onFailure) onFailure(error);
}

void DesktopNavigation::webContentProcessDidTerminate() {
  debug("The web content process terminated");
  if (onFailure) onFailure({"Navora", 1, L("Окно приложения нужно перезагрузить.")});
}

void DesktopNavigation::navigationDidBecomeDownload(std::shared_ptr<Download> download) {
  download->setDelegate(this);
  downloads_.push_back({nullptr, std::nullopt, std::move(download)});
}

void DesktopNavigation::runAlertPanel(const std::string& message, const FrameInfo& initiatedBy,
                                      AlertCompletion completion) {
  if (!mayAsk(initiatedBy, "an alert")) return completion();
  dialogs_.runAlert({L(productName), message, {}, std::nullopt},
                    [completion = std::move(completion)](const AlertResult&) { completion(); });
}

void DesktopNavigation::runConfirmPanel(const std::string& message, const FrameInfo& initiatedBy,
                                        ConfirmCompletion completion) {
  if (!mayAsk(initiatedBy, "a confirmation")) return completion(false);
  dialogs_.runAlert({L(productName), message, {L("Продолжить"), L("Отмена")}, std::nullopt},
                    [completion = std::move(completion)](const AlertResult& result) {
                      completion(result.button == 0);
                    });
}

void DesktopNavigation::runTextInputPanel(const std::string& prompt,
                                          const std::optional<std::string>& defaultText,
                                          const FrameInfo& initiatedBy,
                                          PromptCompletion completion) {
  if (!mayAsk(initiatedBy, "a prompt")) return completion(std::nullopt);
  dialogs_.runAlert({L(productName),
                     prompt,
                     {L("Сохранить"), L("Отмена")},
                     AlertDescription::TextField{promptFieldSize, defaultText.value_or("")}},
                    [completion = std::move(completion)](const AlertResult& result) {
                      if (result.button != 0) return completion(std::nullopt);
                      completion(result.text);
                    });
}

void DesktopNavigation::runOpenPanel(const OpenPanelParameters& parameters,
                                     const FrameInfo& initiatedBy, OpenPanelCompletion completion) {
  const auto parent = window.lock();
  if (!mayAsk(initiatedBy, "a file chooser") || !parent) return completion(std::nullopt);
  dialogs_.beginOpenPanel(*parent, parameters, std::move(completion));
}

void DesktopNavigation::decideDestination(Download& download, const std::optional<Url>& responseUrl,
                                          const std::string& suggestedFilename,
                                          DestinationCompletion completion) {
  // Not every engine asks about every redirect.
  if (!isOfOrigin(responseUrl)) {
    refuse(responseUrl, "the download's response is not from the service");
    return completion(std::nullopt);
  }
  const auto parent = window.lock();
  const auto* asking = find(&download);
  if (!parent || !asking) return completion(std::nullopt);
  dialogs_.beginSavePanel(
      *parent, lastPathComponent(suggestedFilename),
      lifetime_.guard(
          [this, held = std::weak_ptr(asking->download),
           completion = std::move(completion)](const std::optional<std::filesystem::path>& chosen) {
            // The download may have failed while the panel was open.
            auto* active = find(held.lock().get());
            completion(active && chosen ? prepareFile(*active, *chosen) : std::nullopt);
          }));
}

bool DesktopNavigation::allowsRedirect(Download&, const std::optional<Url>& url) {
  return isOfOrigin(url);
}

void DesktopNavigation::downloadDidFinish(Download& download) {
  const auto* active = find(&download);
  if (!active || !active->file) return forget(download);
  active->file->putInPlace(
      lifetime_.guard([this, held = active->download](const std::optional<PlatformError>& error) {
        forget(*held);
        if (error) showFailure(*error);
      }));
}

void DesktopNavigation::downloadDidFail(Download& download, const PlatformError& error) {
  const auto* active = find(&download);
  const PlatformError shown = active && active->failure ? *active->failure : error;
  forget(download);
  // Also shown for cancelled downloads, because the user may be waiting for the file.
  showFailure(shown);
}

void DesktopNavigation::refuse(const std::optional<Url>& url, std::string_view rule) const {
  debug("Refused " + (url ? url->string() : "a navigation") + ": " + std::string(rule));
}

void DesktopNavigation::debug(const std::string& line) const {
  system_.debug(DebugArea::navigation, line);
}

bool DesktopNavigation::isOfOrigin(const std::optional<Url>& url) const {
  return url && DesktopOrigin::contains(*url, origin_);
}

bool DesktopNavigation::isTrusted(const FrameInfo& frame) const {
  return frame.isMainFrame && isOfOrigin(frame.requestUrl);
}

bool DesktopNavigation::mayAsk(const FrameInfo& frame, std::string_view question) const {
  if (isTrusted(frame)) return true;
  debug("Refused " + std::string(question) + ": only the service's main frame may ask the user");
  return false;
}

DesktopNavigation::ActiveDownload* DesktopNavigation::find(const Download* download) {
  const auto found = std::ranges::find_if(
      downloads_, [&](const auto& active) { return active.download.get() == download; });
  return found == downloads_.end() ? nullptr : &*found;
}

// Returns the file that the download is to write, or nullopt if it cannot be made.
std::optional<std::filesystem::path> DesktopNavigation::prepareFile(
    ActiveDownload& active, const std::filesystem::path& destination) {
  auto replacement = makeFileReplacement_(destination);
  if (!replacement) {
    active.failure = replacement.error();
    return std::nullopt;
  }
  active.file = *std::move(replacement);
  return active.file->file();
}

void DesktopNavigation::forget(const Download& download) {
  std::erase_if(downloads_, [&](const auto& active) { return active.download.get() == &download; });
}

void DesktopNavigation::showFailure(const PlatformError& error) {
  dialogs_.runAlert({L("Не удалось скачать файл"), error.localizedDescription, {}, std::nullopt},
                    [](const AlertResult&) {});
}

}  // namespace navora
