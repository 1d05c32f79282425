# What every target of the tree is built with, and how a room, a test and a benchmark are declared.

# What the two below have in common.
add_library(corvane_common_options INTERFACE)
# Designated initialisers name what matters and leave the rest to its default, which -Wextra takes for a slip.
target_compile_options(corvane_common_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wno-missing-field-initializers)
target_compile_definitions(corvane_common_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS QT_STRICT_ITERATORS)
if(CORVANE_WERROR)
    target_compile_options(corvane_common_options INTERFACE -Werror)
endif()

# Hardening, on by default. Every object is position-independent, so that the kernel places the program anew at each
# start; tables of addresses are settled before main() and read-only from there on.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
target_link_options(corvane_common_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
target_compile_options(corvane_common_options INTERFACE -fstack-protector-strong)
target_compile_definitions(corvane_common_options INTERFACE _GLIBCXX_ASSERTIONS)
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection=full CORVANE_HAS_CET)
if(CORVANE_HAS_CET)
    target_compile_options(corvane_common_options INTERFACE -fcf-protection=full)
endif()
if(CORVANE_SANITIZE)
    # What a sanitizer adds keeps the compiler from seeing that an empty optional is never read.
    target_compile_options(corvane_common_options INTERFACE
        -fsanitize=${CORVANE_SANITIZE} -fno-omit-frame-pointer -Wno-maybe-uninitialized)
    target_link_options(corvane_common_options INTERFACE -fsanitize=${CORVANE_SANITIZE})
endif()

# What is delivered, and what is measured.
add_library(corvane_options INTERFACE)
target_link_libraries(corvane_options INTERFACE corvane_common_options)
if(NOT CORVANE_SANITIZE)
    # The library's checks need an optimiser, and get in the way of a sanitizer's own.
    target_compile_options(corvane_options INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
endif()

# What only tests run takes longer to compile than to run, so it does without the optimiser, and without the library's
# checks, which need one.
add_library(corvane_test_options INTERFACE)
target_link_libraries(corvane_test_options INTERFACE corvane_common_options)
target_compile_options(corvane_test_options INTERFACE -O0 -U_FORTIFY_SOURCE)

# Headers that nearly every file reads, read once for all: of QtCore only, which every room may use, and for tests
# GoogleTest's too. It halves the time of a build. Such a file serves only who is compiled with the same options.
function(corvane_precompiled name)
    cmake_parse_arguments(PRECOMPILED "" "OPTIONS" "LINKS;HEADERS" ${ARGN})
    file(WRITE ${CMAKE_BINARY_DIR}/${name}.cpp "")
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PRIVATE ${PRECOMPILED_OPTIONS} ${PRECOMPILED_LINKS})
    target_precompile_headers(${name} PRIVATE ${PRECOMPILED_HEADERS})
endfunction()
set(headers <QDateTime> <QFileInfo> <QHash> <QObject> <QString> <QStringList> <QTimer> <QVariantMap>
    <algorithm> <chrono> <functional> <memory> <optional> <vector>)
corvane_precompiled(precompiled OPTIONS corvane_options LINKS Qt6::Core HEADERS ${headers})
corvane_precompiled(precompiled_tests OPTIONS corvane_test_options LINKS Qt6::Core GTest::gmock
    HEADERS ${headers} <gmock/gmock.h> <gtest/gtest.h>)

# corvane_room(name SOURCES ... LINKS ...): a static library; includes are written from the root of the tree.
function(corvane_room name)
    cmake_parse_arguments(ROOM "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ROOM_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ROOM_LINKS} PRIVATE corvane_options)
    target_precompile_headers(${name} REUSE_FROM precompiled)
endfunction()

# corvane_test_library(name SOURCES ... LINKS ...): what several test programs share.
function(corvane_test_library name)
    cmake_parse_arguments(SHARED "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${SHARED_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${SHARED_LINKS} GTest::gmock PRIVATE corvane_test_options)
    target_precompile_headers(${name} REUSE_FROM precompiled_tests)
endfunction()

# corvane_test(name LABEL unit|window|world SOURCES ... LINKS ...): one GoogleTest program, one CTest entry.
function(corvane_test name)
    cmake_parse_arguments(UNIT "" "LABEL;TIMEOUT" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${UNIT_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${UNIT_LINKS} test_main GTest::gmock corvane_test_options)
    target_precompile_headers(${name} REUSE_FROM precompiled_tests)
    add_test(NAME ${name} COMMAND ${name})
    if(NOT UNIT_TIMEOUT)
        set(UNIT_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES LABELS ${UNIT_LABEL} TIMEOUT ${UNIT_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
endfunction()

# corvane_benchmark(name SOURCES ... LINKS ...): one program in build/<preset>/bench, built when somebody asks for the
# target `benchmarks`.
add_custom_target(benchmarks)
function(corvane_benchmark name)
    cmake_parse_arguments(BENCH "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} EXCLUDE_FROM_ALL ${BENCH_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
    target_link_libraries(${name} PRIVATE ${BENCH_LINKS} corvane_options)
    target_precompile_headers(${name} REUSE_FROM precompiled)
    add_dependencies(benchmarks ${name})
endfunction()
