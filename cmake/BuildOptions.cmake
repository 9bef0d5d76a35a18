# How this build compiles its own sources. Nothing of it reaches a target that links ours: whoever
# includes our headers does so with flags and definitions of their own.
add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual
    $<$<BOOL:${NAPAMMUL_WERROR}>:-Werror>)
add_compile_definitions(
    QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_USE_QSTRINGBUILDER QT_DEPRECATED_WARNINGS)
# Includes are written from the root of the project.
include_directories(${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
