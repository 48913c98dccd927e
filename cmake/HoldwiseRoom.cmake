# SPDX-License-Identifier: MIT
# A room: one folder of a wing, one static library. Other rooms see its public headers and nothing else: they are linked into
# an include folder of their own under the path they have in the wing ("common/grid/string_grid.h"). What is not public is
# included from its own folder by its bare name ("grid_model.h").
#
# holdwise_room(NAME WING <folder the header paths begin at> SOURCES ... PUBLIC <headers> LINKS <rooms, seen by users too>
#               PRIVATE_LINKS ...)
function(holdwise_room name)
  cmake_parse_arguments(ARG "" "WING" "SOURCES;PUBLIC;LINKS;PRIVATE_LINKS" ${ARGN})
  if(ARG_SOURCES)
    add_library(${name} STATIC ${ARG_SOURCES})
    set(scope PUBLIC)
    target_link_libraries(${name} PRIVATE holdwise_options ${ARG_PRIVATE_LINKS})
    target_precompile_headers(${name} REUSE_FROM holdwise_room_headers)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  file(RELATIVE_PATH room ${ARG_WING} ${CMAKE_CURRENT_SOURCE_DIR})
  set(face ${CMAKE_BINARY_DIR}/include/${name})
  file(REMOVE_RECURSE ${face})
  file(MAKE_DIRECTORY ${face}/${room})
  foreach(header IN LISTS ARG_PUBLIC)
    if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${header})
      message(FATAL_ERROR "${name}: there is no header ${header}")
    endif()
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${face}/${room}/${header} SYMBOLIC)
  endforeach()
  target_include_directories(${name} ${scope} ${face})
  target_link_libraries(${name} ${scope} ${ARG_LINKS})
endfunction()

# One precompiled header for all rooms; all of them stand on sdk, which has the widgets.
file(WRITE ${CMAKE_BINARY_DIR}/room_headers.cpp.new "// Only its precompiled header is used.\n")
file(COPY_FILE ${CMAKE_BINARY_DIR}/room_headers.cpp.new ${CMAKE_BINARY_DIR}/room_headers.cpp ONLY_IF_DIFFERENT)
add_library(holdwise_room_headers STATIC ${CMAKE_BINARY_DIR}/room_headers.cpp)
target_link_libraries(holdwise_room_headers PRIVATE holdwise_options holdwise_sdk)
target_precompile_headers(holdwise_room_headers PRIVATE <QtWidgets> <algorithm> <functional> <map> <memory> <optional>
  <string> <vector>)
