# A room is one folder of src/ with one subject. What a room may include is what it names under USES:
# every room gets an include root of its own in the build tree that holds nothing but a link to the
# room's folder, so a forbidden #include does not compile.
#
#   navora_room(NAME [FOLDER dir] [HEADERS h...] SOURCES file... [USES room...] [LIBRARIES target...])
#
# FOLDER defaults to NAME. With HEADERS only the named headers are visible to others, which lets one
# folder hold a class that everybody may know beside those that nobody else may.
# For others: target `navora_NAME`. For the linker: the objects are part of `navora_core`.
define_property(GLOBAL PROPERTY NAVORA_ROOMS BRIEF_DOCS "The rooms whose objects make up navora_core")

function(navora_room name)
  cmake_parse_arguments(ROOM "" "FOLDER" "HEADERS;SOURCES;USES;LIBRARIES" ${ARGN})
  if(NOT ROOM_FOLDER)
    set(ROOM_FOLDER ${name})
  endif()

  set(root "${CMAKE_BINARY_DIR}/rooms/${name}")
  if(ROOM_HEADERS)
    file(MAKE_DIRECTORY "${root}/${ROOM_FOLDER}")
    foreach(header IN LISTS ROOM_HEADERS)
      file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src/${ROOM_FOLDER}/${header}"
           "${root}/${ROOM_FOLDER}/${header}" SYMBOLIC)
    endforeach()
  else()
    file(MAKE_DIRECTORY "${root}")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src/${ROOM_FOLDER}" "${root}/${ROOM_FOLDER}" SYMBOLIC)
  endif()

  list(TRANSFORM ROOM_USES PREPEND navora_)
  add_library(navora_${name} INTERFACE)
  target_include_directories(navora_${name} INTERFACE "${root}")
  target_link_libraries(navora_${name} INTERFACE ${ROOM_USES} ${ROOM_LIBRARIES})

  list(TRANSFORM ROOM_SOURCES PREPEND "${PROJECT_SOURCE_DIR}/src/${ROOM_FOLDER}/")
  add_library(navora_${name}_objects OBJECT ${ROOM_SOURCES})
  target_link_libraries(navora_${name}_objects PRIVATE navora_${name} navora_warnings)
  set_property(GLOBAL APPEND PROPERTY NAVORA_ROOMS ${name})
endfunction()

# Gathers all rooms into the static library `navora_core`, with src/ as its one include root.
function(navora_core)
  get_property(rooms GLOBAL PROPERTY NAVORA_ROOMS)
  add_library(navora_core STATIC)
  target_include_directories(navora_core PUBLIC "${PROJECT_SOURCE_DIR}/src")
  foreach(room IN LISTS rooms)
    target_sources(navora_core PRIVATE $<TARGET_OBJECTS:navora_${room}_objects>)
  endforeach()
  target_link_libraries(navora_core PUBLIC ${ARGN})
  set_target_properties(navora_core PROPERTIES LINKER_LANGUAGE CXX)
endfunction()
