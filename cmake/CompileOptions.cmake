# What every target of this tree is compiled with: one interface target, linked privately,
# so that a project that adds this tree as a sub-folder is left alone.
add_library(vantrel_compile_options INTERFACE)
target_compile_options(vantrel_compile_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wold-style-cast -Wcast-qual -Wundef)
target_compile_definitions(vantrel_compile_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(VANTREL_SANITIZE)
  target_compile_options(vantrel_compile_options INTERFACE
    -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vantrel_compile_options INTERFACE
    -fsanitize=address,undefined,float-cast-overflow)
endif()
