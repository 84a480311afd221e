#include "hosts/macos/window/MacMainWindow.h"

#include <utility>

#include "hosts/macos/system/AppKitConversions.h"
#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/web/MacWebView.h"

@interface NavoraWindowForwarder : NSObject <NSWindowDelegate>
@property(nonatomic, nullable) navora::MainWindowDelegate* delegate;
@end

@implementation NavoraWindowForwarder

- (BOOL)windowShouldClose:(NSWindow*)sender {
  return self.delegate != nullptr && self.delegate->windowShouldClose();
}

@end

namespace navora {

namespace {

constexpr NSWindowStyleMask styleMask = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                        NSWindowStyleMaskMiniaturizable |
                                        NSWindowStyleMaskResizable;

NSWindow* makeWindow(const MainWindowDescription& description) {
  const NSRect contentRect =
      NSMakeRect(0, 0, description.contentSize.width, description.contentSize.height);
  NSWindow* window = [[NSWindow alloc] initWithContentRect:contentRect
                                                 styleMask:styleMask
                                                   backing:NSBackingStoreBuffered
                                                     defer:NO];
  window.releasedWhenClosed = NO;
  window.title = toNSString(description.title);
  window.minSize = NSMakeSize(description.minimumSize.width, description.minimumSize.height);
  // Setting the name restores the stored frame; -center then keeps only its size.
  [window setFrameAutosaveName:toNSString(description.frameAutosaveName)];
  [window center];
  return window;
}

}  // namespace

MacMainWindow::MacMainWindow(const MainWindowDescription& description, MainWindowDelegate& delegate)
    : window_(makeWindow(description)), forwarder_([[NavoraWindowForwarder alloc] init]) {
  forwarder_.delegate = &delegate;
  window_.delegate = forwarder_;
}

MacMainWindow::~MacMainWindow() {
  forwarder_.delegate = nullptr;
  window_.delegate = nil;
  [window_ orderOut:nil];
}

void MacMainWindow::setTitle(const std::string& title) {
  window_.title = toNSString(title);
}

void MacMainWindow::setContentView(std::shared_ptr<WebView> webView) {
  webView_ = std::move(webView);
  window_.contentView = [[NSView alloc] initWithFrame:NSZeroRect];
  // `webView` must be made by MacPlatform.
  NSView* page = static_cast<MacWebView&>(*webView_).nsView();
  addFilling(page);
  window_.initialFirstResponder = page;
}

void MacMainWindow::addFilling(NSView* view) {
  NSView* content = window_.contentView;
  view.translatesAutoresizingMaskIntoConstraints = NO;
  [content addSubview:view];
  [NSLayoutConstraint activateConstraints:@[
    [view.leadingAnchor constraintEqualToAnchor:content.leadingAnchor],
    [view.trailingAnchor constraintEqualToAnchor:content.trailingAnchor],
    [view.topAnchor constraintEqualToAnchor:content.topAnchor],
    [view.bottomAnchor constraintEqualToAnchor:content.bottomAnchor],
  ]];
}

void MacMainWindow::makeContentViewFirstResponder() {
  if (covers_ == 0) [window_ makeFirstResponder:window_.initialFirstResponder];
}

void MacMainWindow::coverContent() {
  ++covers_;
  static_cast<MacWebView&>(*webView_).setCovered(true);
  [window_ makeFirstResponder:nil];
}

void MacMainWindow::uncoverContent() {
  if (--covers_ > 0) return;
  static_cast<MacWebView&>(*webView_).setCovered(false);
  [window_ makeFirstResponder:window_.initialFirstResponder];
}

void MacMainWindow::setAppearance(WindowAppearance appearance) {
  window_.appearance = toNSAppearance(appearance);
}

bool MacMainWindow::isMiniaturized() const {
  return window_.miniaturized;
}

void MacMainWindow::deminiaturize() {
  [window_ deminiaturize:nil];
}

void MacMainWindow::makeKeyAndOrderFront() {
  [window_ makeKeyAndOrderFront:nil];
}

void MacMainWindow::orderOut() {
  [window_ orderOut:nil];
}

}  // namespace navora
