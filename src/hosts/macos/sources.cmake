# What the macOS host is made of and how it is compiled, for its own target and for the type check.
set(navora_macos_source_directory "${CMAKE_CURRENT_LIST_DIR}")
set(navora_macos_sources
  MacPlatform.mm
  application/AppKitMenus.mm
  application/MacApplication.mm
  application/MacStatusItem.mm
  capture/CapturePanelConstraints.mm
  capture/MacCaptureEditor.mm
  capture/MacCapturePanel.mm
  graphics/CoreGraphicsCanvas.mm
  graphics/MacImaging.mm
  main.mm
  notifications/MacNotificationCenter.mm
  system/AppKitConversions.mm
  system/Conversions.mm
  system/FoundationJson.mm
  system/KeyValueObservation.mm
  system/MacBackgroundQueue.mm
  system/MacHotKeys.mm
  system/MacHttpSession.mm
  system/MacMainQueue.mm
  system/MacResources.mm
  system/MacSystem.mm
  system/MacUserDefaults.mm
  system/MacWorkspace.mm
  updates/MacUpdateBanner.mm
  updates/MacUpdater.mm
  updates/UpdateBanner.mm
  updates/UserDriverForwarder.mm
  web/MacDownload.mm
  web/MacWebView.mm
  web/NavigationConversions.mm
  web/NavigationForwarder.mm
  window/MacDialogs.mm
  window/MacErrorView.mm
  window/MacMainWindow.mm)

# Nullability is how Objective-C says what may be nil; -Wpedantic objects to it in C++.
set(navora_macos_compile_options
  -fobjc-arc -fobjc-weak -Wno-nullability-extension
  -Werror=objc-method-access -Werror=undeclared-selector -Werror=incomplete-implementation
  -Werror=protocol -Werror=objc-property-implementation)
