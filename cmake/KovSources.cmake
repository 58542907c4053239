# Rooms name their sources; the two libraries are made of what they named.
#
#   kov_document_sources(a.cpp b.cpp)   in a room of document/
#   kov_services_sources(a.cpp b.cpp)   in frame/ and in the modules of KOVSrvSimServices/
#   kov_kovsim_sources(a.cpp b.cpp)     in tools/kovsim/ (all but main.cpp)
#
# Each adds absolute paths to a global property that the top CMakeLists.txt reads.

function(_kov_append_sources property)
  foreach(source IN LISTS ARGN)
    get_filename_component(path "${source}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    if(NOT EXISTS "${path}")
      message(FATAL_ERROR "${CMAKE_CURRENT_LIST_FILE}: there is no source ${path}")
    endif()
    set_property(GLOBAL APPEND PROPERTY ${property} "${path}")
  endforeach()
endfunction()

function(kov_document_sources)
  _kov_append_sources(KOV_DOCUMENT_SOURCES ${ARGN})
endfunction()

function(kov_services_sources)
  _kov_append_sources(KOV_SERVICES_SOURCES ${ARGN})
endfunction()

function(kov_kovsim_sources)
  _kov_append_sources(KOV_KOVSIM_SOURCES ${ARGN})
endfunction()

# kov_add_rooms(dir...): enters each folder that has a CMakeLists.txt; one that appears later is
# noticed at the next build.
macro(kov_add_rooms)
  foreach(_room ${ARGN})
    file(GLOB _room_list CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${_room}/CMakeLists.txt")
    if(_room_list)
      add_subdirectory("${CMAKE_SOURCE_DIR}/${_room}")
    endif()
  endforeach()
endmacro()
