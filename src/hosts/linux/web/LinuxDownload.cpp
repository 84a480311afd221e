#include "hosts/linux/web/LinuxDownload.h"

#include "hosts/linux/system/PlatformErrors.h"

namespace navora {
namespace {

std::optional<Url> addressOf(WebKitURIResponse* response) {
  if (response == nullptr) return std::nullopt;
  return Url::parse(stringFrom(webkit_uri_response_get_uri(response)));
}

}  // namespace

LinuxDownload::LinuxDownload(WebKitDownload* download)
    : download_(GObjectPtr<WebKitDownload>::retain(download)) {
  signals_.emplace_back(download, "decide-destination", G_CALLBACK(onDecideDestination), this);
  signals_.emplace_back(download, "failed", G_CALLBACK(onFailed), this);
  signals_.emplace_back(download, "finished", G_CALLBACK(onFinished), this);
}

LinuxDownload::~LinuxDownload() {
  signals_.clear();
  if (!ended_) webkit_download_cancel(download_.get());
}

gboolean LinuxDownload::onDecideDestination(WebKitDownload*, const char* suggestedFilename,
                                            gpointer self) {
  static_cast<LinuxDownload*>(self)->askForDestination(stringFrom(suggestedFilename));
  return TRUE;
}

void LinuxDownload::askForDestination(const std::string& suggestedFilename) {
  if (delegate_ == nullptr) return setDestination(std::nullopt);
  delegate_->decideDestination(
      *this, addressOf(webkit_download_get_response(download_.get())), suggestedFilename,
      [weak = weak_from_this()](const std::optional<std::filesystem::path>& path) {
        if (const auto self = weak.lock()) self->setDestination(path);
      });
}

void LinuxDownload::setDestination(const std::optional<std::filesystem::path>& path) {
  if (!path) return webkit_download_cancel(download_.get());
  const GCharPtr uri(g_filename_to_uri(path->c_str(), nullptr, nullptr));
  if (!uri) return webkit_download_cancel(download_.get());
  webkit_download_set_destination(download_.get(), uri.get());
}

void LinuxDownload::onFailed(WebKitDownload*, GError* error, gpointer self) {
  auto& download = *static_cast<LinuxDownload*>(self);
  const auto keepAlive = download.shared_from_this();
  download.ended_ = true;
  if (download.delegate_ != nullptr)
    download.delegate_->downloadDidFail(download, platformErrorFrom(*error));
}

void LinuxDownload::onFinished(WebKitDownload*, gpointer self) {
  auto& download = *static_cast<LinuxDownload*>(self);
  // WebKitGTK emits "finished" after "failed" too.
  if (download.ended_) return;
  const auto keepAlive = download.shared_from_this();
  download.ended_ = true;
  if (download.delegate_ != nullptr) download.delegate_->downloadDidFinish(download);
}

}  // namespace navora
