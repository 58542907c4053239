# kov_target_defaults(target): the language, the warnings and the visibility of everything built here.

option(KOV_WERROR "Warnings are errors" ON)

set(KOV_WARNINGS -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor)
# GCC 12 reports an overlap within the text that operator+ of a string inserts; it never overlaps.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  list(APPEND KOV_WARNINGS -Wno-restrict)
endif()
if(KOV_WERROR)
  list(APPEND KOV_WARNINGS -Werror)
endif()

function(kov_target_defaults target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  target_compile_options(${target} PRIVATE ${KOV_WARNINGS})
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
endfunction()
