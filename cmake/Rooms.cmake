# A room is a static library with a folder of its own. It sees its own headers and those of the
# rooms that it links, straight or over others; an include against the direction does not compile.
#
# vantrel_add_room(NAME vantrel_x SOURCES ... [LINKS ...] [PRIVATE_LINKS ...] [PRECOMPILED headers])
# LINKS are what its headers need, PRIVATE_LINKS what only its sources need. A room of the window
# names the precompiled headers of the window.
function(vantrel_add_room)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME;PRECOMPILED" "SOURCES;LINKS;PRIVATE_LINKS")
  if(NOT arg_PRECOMPILED)
    set(arg_PRECOMPILED vantrel_core_headers)
  endif()
  add_library(${arg_NAME} STATIC ${arg_SOURCES})
  target_include_directories(${arg_NAME} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_compile_features(${arg_NAME} PUBLIC cxx_std_20)
  target_link_libraries(${arg_NAME} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS} vantrel_compile_options)
  target_precompile_headers(${arg_NAME} REUSE_FROM ${arg_PRECOMPILED})
endfunction()
