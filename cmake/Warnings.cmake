# Every target of the project links this; headers of Qt and the system are SYSTEM and stay silent.
add_library(napammul_options INTERFACE)
target_compile_options(napammul_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual
    $<$<BOOL:${NAPAMMUL_WERROR}>:-Werror>)
target_compile_definitions(napammul_options INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_USE_QSTRINGBUILDER QT_DEPRECATED_WARNINGS)
target_include_directories(napammul_options INTERFACE
    ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
