# How this build compiles its own sources. None of this affects other projects that link our
# libraries: they include our headers with their own flags and definitions.
add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual
    $<$<BOOL:${NAPAMMUL_WERROR}>:-Werror>)
add_compile_definitions(
    QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_USE_QSTRINGBUILDER QT_DEPRECATED_WARNINGS)
# Includes are written from the root of the project.
include_directories(${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
