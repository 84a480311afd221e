# What the macOS host is made of and how it is compiled, for its own target and for the type check.
set(navora_macos_source_directory "${CMAKE_CURRENT_LIST_DIR}")
set(navora_macos_sources
  AppKitConversions.mm
  CaptureEditor.mm
  CapturePanel.mm
  CapturePanelConstraints.mm
  CaptureSubmitButton.mm
  CaptureSurface.mm
  CaptureTransport.mm
  Conversions.mm
  CoreGraphicsCanvas.mm
  FoundationJson.mm
  KeyValueObservation.mm
  Layout.mm
  MacAboutPanel.mm
  MacApplication.mm
  MacBackgroundQueue.mm
  MacCaptureEditor.mm
  MacCapturePanel.mm
  MacDialogs.mm
  MacDownload.mm
  MacErrorView.mm
  MacHotKeys.mm
  MacHttpSession.mm
  MacImaging.mm
  MacMainQueue.mm
  MacMainWindow.mm
  MacMenus.mm
  MacNavigationDelegate.mm
  MacNotificationCenter.mm
  MacPlatform.mm
  MacResources.mm
  MacScriptMessages.mm
  MacStatusItem.mm
  MacSystem.mm
  MacUpdateBanner.mm
  MacUpdater.mm
  MacUserDefaults.mm
  MacWebView.mm
  MacWorkspace.mm
  MenuTarget.mm
  NavigationConversions.mm
  SystemAppearance.mm
  UpdateBanner.mm
  UpdaterConversions.mm
  UserDriverForwarder.mm
  main.mm)

# Nullability is how Objective-C says what may be nil; -Wpedantic objects to it in C++.
set(navora_macos_compile_options
  -fobjc-arc -fobjc-weak -Wno-nullability-extension
  -Werror=objc-method-access -Werror=undeclared-selector -Werror=incomplete-implementation
  -Werror=protocol -Werror=objc-property-implementation)
