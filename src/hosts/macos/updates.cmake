# Settings for updates: the feed and the key in the bundle's property list, and the Sparkle framework
# in the bundle.
set(NAVORA_SPARKLE_FRAMEWORK "" CACHE PATH "Sparkle.framework, version 2, to be put into Navora.app")

# A release without these could never update itself.
foreach(setting IN ITEMS NAVORA_FEED_URL NAVORA_UPDATE_PUBLIC_KEY)
  if(CMAKE_BUILD_TYPE STREQUAL "Release" AND "${${setting}}" STREQUAL "")
    get_property(meaning CACHE ${setting} PROPERTY HELPSTRING)
    message(FATAL_ERROR "A release of Navora.app needs ${setting}. ${meaning}. "
      "Give it to CMake with -D${setting}=..., or build with -DCMAKE_BUILD_TYPE=Debug.")
  endif()
  # Escaped for the property list, which is XML.
  string(REPLACE "&" "&amp;" text "${${setting}}")
  string(REPLACE "<" "&lt;" text "${text}")
  set(${setting}_TEXT "${text}")
endforeach()

cmake_path(ABSOLUTE_PATH NAVORA_SPARKLE_FRAMEWORK BASE_DIRECTORY "${CMAKE_SOURCE_DIR}" NORMALIZE
  OUTPUT_VARIABLE sparkle)
if(NOT NAVORA_SPARKLE_FRAMEWORK OR NOT EXISTS "${sparkle}/Headers/SPUUpdater.h")
  message(FATAL_ERROR "Navora.app needs Sparkle 2: NAVORA_SPARKLE_FRAMEWORK is "
    "\"${NAVORA_SPARKLE_FRAMEWORK}\", which is no Sparkle.framework with headers. "
    "Give the path to CMake with -DNAVORA_SPARKLE_FRAMEWORK=.../Sparkle.framework.")
endif()

# Compiles the updates module with the framework's headers, links `target` to the framework and copies
# it into the bundle after every link.
function(navora_embed_sparkle target)
  cmake_path(GET sparkle PARENT_PATH folder)
  # -iframework rather than -F, so that its headers cause no warnings.
  target_compile_options(navora_macos_updates INTERFACE "SHELL:-iframework \"${folder}\"")
  target_link_options(${target} PRIVATE
    "SHELL:-F \"${folder}\"" "LINKER:-rpath,@executable_path/../Frameworks")
  target_link_libraries(${target} PRIVATE "-framework Sparkle")
  # ditto keeps the symbolic links in the framework, and with them its signature.
  set(copy "$<TARGET_BUNDLE_CONTENT_DIR:${target}>/Frameworks/Sparkle.framework")
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND "${CMAKE_COMMAND}" -E rm -rf "${copy}"
    COMMAND ditto "${sparkle}" "${copy}"
    COMMENT "Putting Sparkle.framework into the bundle" VERBATIM)
endfunction()
