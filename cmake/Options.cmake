# How all of our own code is compiled: language level, warnings, sanitizers, the precompiled header.

option(SNAPVANE_WERROR "Treat warnings as errors" ON)
option(SNAPVANE_ASSERTIONS "Standard library and Qt assertions" OFF)
option(SNAPVANE_COVERAGE "Instrument for coverage" OFF)
set(SNAPVANE_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

add_library(snapvane_options INTERFACE)
target_compile_options(snapvane_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
    -fpch-preprocess)
target_compile_definitions(snapvane_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(SNAPVANE_WERROR)
    target_compile_options(snapvane_options INTERFACE -Werror)
endif()
if(SNAPVANE_ASSERTIONS)
    target_compile_definitions(snapvane_options INTERFACE _GLIBCXX_ASSERTIONS QT_FORCE_ASSERTS)
endif()
if(SNAPVANE_SANITIZE)
    target_compile_options(snapvane_options INTERFACE
        -fsanitize=${SNAPVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(snapvane_options INTERFACE -fsanitize=${SNAPVANE_SANITIZE})
    target_compile_definitions(snapvane_options INTERFACE SNAPVANE_SANITIZED)
endif()
if(SNAPVANE_COVERAGE)
    target_compile_options(snapvane_options INTERFACE --coverage)
    target_link_options(snapvane_options INTERFACE --coverage)
endif()

# Everything of ours sees the same Qt, so that one precompiled header serves all of it.
add_library(snapvane_qt INTERFACE)
target_link_libraries(snapvane_qt INTERFACE
    Qt6::Core Qt6::Gui Qt6::Widgets Qt6::DBus Qt6::Concurrent Qt6::Svg QCoro6::Core)

# snapvane_target(<target>): the settings above on a library or program of ours.
function(snapvane_target target)
    target_link_libraries(${target} PRIVATE snapvane_options PUBLIC snapvane_qt)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    if(NOT target STREQUAL "snapvane_base")
        target_precompile_headers(${target} REUSE_FROM snapvane_base)
    endif()
endfunction()
