#include "hosts/macos/web/MacDownload.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/web/AnsweredOnce.h"

// The WebKit side of one download. Its reports to the core come last in every method, because the
// core lets go of the download, and with it of this object, when it has ended.
@interface NavoraDownloadForwarder : NSObject <WKDownloadDelegate>
@property(nonatomic, nullable) navora::MacDownload* download;
@property(nonatomic, nullable) navora::DownloadDelegate* delegate;
@property(nonatomic) BOOL ended;
@end

namespace {

using Destination = std::optional<std::filesystem::path>;

// WebKit refuses to write to a file that exists. By now the user has agreed to replace it.
NSURL* _Nullable prepareDestination(const Destination& destination) {
  if (!destination) return nil;
  std::error_code ignored;
  std::filesystem::remove(*destination, ignored);
  return navora::toFileURL(*destination);
}

}  // namespace

@implementation NavoraDownloadForwarder

- (void)download:(WKDownload*)download
    decideDestinationUsingResponse:(NSURLResponse*)response
                 suggestedFilename:(NSString*)suggestedFilename
                 completionHandler:(void (^)(NSURL* _Nullable))completionHandler {
  const auto answer =
      navora::answeredOnce(std::function<void(Destination)>([=](Destination destination) {
                             completionHandler(prepareDestination(destination));
                           }),
                           std::nullopt);
  if (self.delegate == nullptr || self.download == nullptr) return;
  self.delegate->decideDestination(*self.download, navora::toString(suggestedFilename), answer);
}

- (void)download:(WKDownload*)download
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
               decisionHandler:(void (^)(WKDownloadRedirectPolicy))decisionHandler {
  const bool allowed = self.delegate != nullptr && self.download != nullptr &&
                       self.delegate->allowsRedirect(*self.download, navora::toUrl(request.URL));
  decisionHandler(allowed ? WKDownloadRedirectPolicyAllow : WKDownloadRedirectPolicyCancel);
}

- (void)downloadDidFinish:(WKDownload*)download {
  self.ended = YES;
  if (self.delegate == nullptr || self.download == nullptr) return;
  self.delegate->downloadDidFinish(*self.download);
}

- (void)download:(WKDownload*)download
    didFailWithError:(NSError*)error
          resumeData:(nullable NSData*)resumeData {
  self.ended = YES;
  if (self.delegate == nullptr || self.download == nullptr) return;
  self.delegate->downloadDidFail(*self.download, navora::toPlatformError(error));
}

@end

namespace navora {

MacDownload::MacDownload(WKDownload* _Nonnull download)
    : download_(download), forwarder_([[NavoraDownloadForwarder alloc] init]) {
  forwarder_.download = this;
  download_.delegate = forwarder_;
}

MacDownload::~MacDownload() {
  forwarder_.download = nullptr;
  forwarder_.delegate = nullptr;
  if (!forwarder_.ended) [download_ cancel:nil];
}

void MacDownload::setDelegate(DownloadDelegate* _Nullable delegate) {
  forwarder_.delegate = delegate;
}

}  // namespace navora
