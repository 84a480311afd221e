# The modules of the macOS host, listed from the ground up: system; graphics, web; window; application,
# capture, notifications, updates; main. Each is one folder, main the host's own one. CMakeLists.txt
# builds Navora.app from this list, and tests/macos compiles it where there is no macOS.

# Nullability is how Objective-C says what may be nil; -Wpedantic objects to it in C++.
set(navora_macos_compile_options
  -fobjc-arc -fobjc-weak -Wno-nullability-extension
  -Werror=objc-method-access -Werror=undeclared-selector -Werror=incomplete-implementation
  -Werror=protocol -Werror=objc-property-implementation)

# navora_macos_sources(NAME SOURCES file... [USES module...])
#
# The sources of one module and all that they may include, as the interface target
# `navora_macos_NAME_sources`. Nothing is compiled until a target links to it.
define_property(GLOBAL PROPERTY NAVORA_MACOS_MODULES BRIEF_DOCS "The modules that make up Navora.app")

function(navora_macos_sources name)
  cmake_parse_arguments(MODULE "" "" "SOURCES;USES" ${ARGN})
  list(TRANSFORM MODULE_SOURCES PREPEND "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/")
  list(TRANSFORM MODULE_USES PREPEND navora_)
  set(target navora_macos_${name}_sources)
  add_library(${target} INTERFACE)
  target_sources(${target} INTERFACE ${MODULE_SOURCES})
  target_compile_options(${target} INTERFACE ${navora_macos_compile_options})
  target_link_libraries(${target} INTERFACE ${MODULE_USES} navora_warnings)
  set_property(GLOBAL APPEND PROPERTY NAVORA_MACOS_MODULES ${name})
endfunction()

# navora_macos_module(FOLDER SOURCES file... [USES module...] [USES_PRIVATELY module...])
#
# The module in FOLDER. Others see its headers through the target `navora_macos_FOLDER`. Modules are
# named as in the target without the prefix: "platform", "macos_web". USES are those that its headers
# include, which users of the module may therefore include too; USES_PRIVATELY those that only its
# sources include.
function(navora_macos_module folder)
  cmake_parse_arguments(MODULE "" "" "SOURCES;USES;USES_PRIVATELY" ${ARGN})
  list(TRANSFORM MODULE_SOURCES PREPEND "${folder}/")
  navora_macos_sources(${folder}
    SOURCES ${MODULE_SOURCES}
    USES macos_${folder} ${MODULE_USES_PRIVATELY})
  list(TRANSFORM MODULE_USES PREPEND navora_)
  add_library(navora_macos_${folder} INTERFACE)
  navora_include_root(navora_macos_${folder} INTERFACE hosts/macos/${folder}
    "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${folder}")
  target_link_libraries(navora_macos_${folder} INTERFACE ${MODULE_USES})
endfunction()

navora_macos_module(system
  SOURCES AppKitConversions.mm Conversions.mm FoundationJson.mm KeyValueObservation.mm
          MacBackgroundQueue.mm MacHotKeys.mm MacHttpSession.mm MacMainQueue.mm MacResources.mm
          MacSystem.mm MacUserDefaults.mm MacWorkspace.mm
  USES platform support)

navora_macos_module(graphics
  SOURCES CoreGraphicsCanvas.mm MacImaging.mm
  USES platform
  USES_PRIVATELY macos_system)

navora_macos_module(web
  SOURCES MacDownload.mm MacWebView.mm NavigationConversions.mm NavigationForwarder.mm ReplacementFolder.mm
  USES platform support
  USES_PRIVATELY macos_system)

navora_macos_module(window
  SOURCES MacDialogs.mm MacErrorView.mm MacMainWindow.mm
  USES platform
  USES_PRIVATELY macos_system macos_web)

navora_macos_module(application
  SOURCES AppKitMenus.mm MacApplication.mm MacStatusItem.mm
  USES platform
  USES_PRIVATELY macos_graphics macos_system)

navora_macos_module(capture
  SOURCES CapturePanelConstraints.mm MacCaptureEditor.mm MacCapturePanel.mm
  USES platform
  USES_PRIVATELY macos_graphics macos_system)

navora_macos_module(notifications
  SOURCES MacNotificationCenter.mm
  USES platform support
  USES_PRIVATELY macos_system)

navora_macos_module(updates
  SOURCES MacUpdateBanner.mm MacUpdater.mm UpdateBanner.mm UserDriverForwarder.mm
  USES platform support
  USES_PRIVATELY macos_system macos_window)

# The platform interfaces, put together, and the program.
navora_macos_sources(main
  SOURCES MacPlatform.mm main.mm
  USES macos_application macos_capture macos_graphics macos_notifications macos_system macos_updates
       macos_web macos_window platform app locale)
navora_include_root(navora_macos_main_sources INTERFACE
  hosts/macos/MacPlatform.h "${CMAKE_CURRENT_LIST_DIR}/MacPlatform.h")
