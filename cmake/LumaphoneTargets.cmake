# How this project declares its libraries, programs and tests: warnings, sanitizers and the include root in one place.

add_library(lumaphone_options INTERFACE)
target_compile_features(lumaphone_options INTERFACE cxx_std_20)
target_include_directories(lumaphone_options INTERFACE "${CMAKE_CURRENT_SOURCE_DIR}/src")
target_link_options(lumaphone_options INTERFACE -Wl,--as-needed)
find_program(LUMAPHONE_LLD ld.lld)
if(LUMAPHONE_LLD AND PROJECT_IS_TOP_LEVEL)
    # There are hundreds of programs to link, and it takes a fourth of the time.
    target_link_options(lumaphone_options INTERFACE -fuse-ld=lld)
endif()

# Literals of the program are marked as what they are; tests may write plain ones.
add_library(lumaphone_strict_text INTERFACE)
target_compile_definitions(lumaphone_strict_text INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)

set(warnings -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
    -Woverloaded-virtual -Wnull-dereference -Wcast-align -Wimplicit-fallthrough)
# Our own gates let no warning pass. A user's compiler may be newer than all that we know.
if(LUMAPHONE_WARNINGS_AS_ERRORS)
    list(APPEND warnings -Werror)
endif()
add_library(lumaphone_warnings INTERFACE)
target_compile_options(lumaphone_warnings INTERFACE ${warnings})
# For targets with code generated from QML, which shadows its own names and the toolkit's null pointers.
list(REMOVE_ITEM warnings -Wshadow -Wnull-dereference)
add_library(lumaphone_generated_code_warnings INTERFACE)
target_compile_options(lumaphone_generated_code_warnings INTERFACE ${warnings})

# A unity build compiles several sources as one, which takes a third of the time from nothing. GCC then takes the
# lambdas of a source for those of a header.
set(CMAKE_UNITY_BUILD_BATCH_SIZE 12)
set(LUMAPHONE_TEST_BATCH_SIZE 8)
if(CMAKE_UNITY_BUILD)
    foreach(warnings IN ITEMS lumaphone_warnings lumaphone_generated_code_warnings)
        target_compile_options(${warnings} INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    endforeach()
endif()

if(LUMAPHONE_SANITIZE)
    target_compile_options(lumaphone_options INTERFACE -fsanitize=${LUMAPHONE_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all -g1
        # Its marks before functions cannot be placed before coroutines.
        $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)
    # The optimiser's view of null pointers and of lifetimes is distorted by the instrumentation.
    target_compile_options(lumaphone_warnings INTERFACE -Wno-null-dereference $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized> -O1)
    target_link_options(lumaphone_options INTERFACE -fsanitize=${LUMAPHONE_SANITIZE})
endif()
if(LUMAPHONE_FUZZ)
    target_compile_options(lumaphone_options INTERFACE -fsanitize=fuzzer-no-link
        "-fsanitize-coverage-ignorelist=${CMAKE_CURRENT_SOURCE_DIR}/cmake/fuzz-uninstrumented.txt")
endif()

find_program(LUMAPHONE_CCACHE ccache)
if(LUMAPHONE_CCACHE AND PROJECT_IS_TOP_LEVEL)
    # Precompiled headers are known by their time stamps.
    set(launcher "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${LUMAPHONE_CCACHE}")
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

# Sanitizer builds make no more than their tests need.
if(LUMAPHONE_SANITIZE AND NOT LUMAPHONE_FUZZ)
    set(LUMAPHONE_ONLY_FOR_TESTS EXCLUDE_FROM_ALL)
endif()

# lumaphone_add_library(<folder> SOURCES ... [PUBLIC ...] [PRIVATE ...] [MOC])
# The static library lumaphone_<folder>, known as Lumaphone::<folder>, with "_" for every "/". MOC: some class has Q_OBJECT or
# Q_GADGET.
function(lumaphone_add_library folder)
    cmake_parse_arguments(ARG "MOC" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    string(REPLACE "/" "_" folder "${folder}")
    add_library(lumaphone_${folder} STATIC ${LUMAPHONE_ONLY_FOR_TESTS} ${ARG_SOURCES})
    set_target_properties(lumaphone_${folder} PROPERTIES AUTOMOC ${ARG_MOC})
    add_library(Lumaphone::${folder} ALIAS lumaphone_${folder})
    target_link_libraries(lumaphone_${folder} PUBLIC lumaphone_options ${ARG_PUBLIC}
        PRIVATE lumaphone_warnings lumaphone_strict_text ${ARG_PRIVATE})
    set_property(GLOBAL APPEND PROPERTY LUMAPHONE_LIBRARIES lumaphone_${folder})
endfunction()

# lumaphone_add_program(<name> SOURCES ... [LIBS ...])
function(lumaphone_add_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${LUMAPHONE_ONLY_FOR_TESTS} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE lumaphone_options lumaphone_warnings lumaphone_strict_text ${ARG_LIBS})
    # All programs lie side by side, as a bundle's resources do.
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
endfunction()

# Tests of one build carry its sanitizer in their names, so that several builds can share one summary.
if(LUMAPHONE_SANITIZE MATCHES "address")
    set(LUMAPHONE_TEST_PREFIX "asan.")
elseif(LUMAPHONE_SANITIZE MATCHES "thread")
    set(LUMAPHONE_TEST_PREFIX "tsan.")
else()
    set(LUMAPHONE_TEST_PREFIX "")
endif()
set(LUMAPHONE_SOURCE_ROOT "${CMAKE_CURRENT_SOURCE_DIR}")
set(LUMAPHONE_TEST_ENVIRONMENT "QT_FATAL_WARNINGS=1;QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;ASAN_OPTIONS=detect_leaks=1;LSAN_OPTIONS=suppressions=${LUMAPHONE_SOURCE_ROOT}/cmake/lsan.supp:print_suppressions=0;UBSAN_OPTIONS=print_stacktrace=1;TSAN_OPTIONS=suppressions=${LUMAPHONE_SOURCE_ROOT}/cmake/tsan.supp:second_deadlock_stack=1:ignore_noninstrumented_modules=1:die_after_fork=0")

# The programs of the tests that do not have the label "long".
add_custom_target(lumaphone_quick_tests)

# lumaphone_add_test(<Name> [SANITIZED | THREADED] [EXCLUSIVE] [SOUND_SERVERS] [TIMEOUT seconds] [LIBS ...]
#     [DEFINITIONS ...] [NEEDS targets...] [OWN_PROGRAM])
# The Qt Test class of <Name>.cpp, which includes <Name>.moc. All of a folder are one program, lumaphone-tests-<folder> with "_" for
# every "/", and each is one entry of ctest. SANITIZED tests are also built and run with the address sanitizer, THREADED ones with
# the thread sanitizer as well; EXCLUSIVE ones use real time (a sound server, a window) and never run beside one another.
# SOUND_SERVERS: the test is run a second time, as <Name>OnPipeWire, with another sound server, and never with the address sanitizer.
# TIMEOUT: it may last for so long, not for the usual 120 seconds. Such tests and EXCLUSIVE ones have the label "long".
# NEEDS are programs that it starts. OWN_PROGRAM: it is a program <Name> of its own, with a main() or operators of its own.
function(lumaphone_add_test name)
    cmake_parse_arguments(ARG "SANITIZED;THREADED;EXCLUSIVE;SOUND_SERVERS;OWN_PROGRAM" "TIMEOUT" "LIBS;DEFINITIONS;NEEDS" ${ARGN})
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "lumaphone_add_test(${name}) does not know ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    if(LUMAPHONE_SANITIZE AND NOT ARG_THREADED AND (LUMAPHONE_SANITIZE STREQUAL "thread" OR NOT ARG_SANITIZED))
        return()
    endif()
    if(LUMAPHONE_SANITIZE MATCHES "address" AND ARG_SOUND_SERVERS)
        return()
    endif()
    lumaphone_test_program_of_folder(program)
    set(arguments "${name}")
    if(ARG_OWN_PROGRAM)
        set(program "${name}")
        set(arguments)
    endif()
    lumaphone_add_test_source("${program}" "${name}" "${ARG_OWN_PROGRAM}")
    target_link_libraries(${program} PRIVATE ${ARG_LIBS})
    target_compile_definitions(${program} PRIVATE ${ARG_DEFINITIONS})
    if(ARG_NEEDS)
        add_dependencies(${program} ${ARG_NEEDS})
    endif()
    # Those that may take long begin first, and before them those that wait for each other.
    set(properties)
    if(ARG_EXCLUSIVE)
        list(APPEND properties RESOURCE_LOCK real-time COST 2000 LABELS long)
    elseif(ARG_TIMEOUT)
        list(APPEND properties COST ${ARG_TIMEOUT} LABELS long)
    else()
        add_dependencies(lumaphone_quick_tests ${program})
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    set(runs "${LUMAPHONE_TEST_PREFIX}${name}")
    if(ARG_SOUND_SERVERS AND NOT LUMAPHONE_SANITIZE)
        list(APPEND runs "${name}OnPipeWire")
    endif()
    foreach(run IN LISTS runs)
        set(environment "${LUMAPHONE_TEST_ENVIRONMENT}")
        if(run MATCHES "OnPipeWire$")
            list(APPEND environment "LUMAPHONE_TEST_SOUND_SERVER=pipewire")
        endif()
        add_test(NAME "${run}" COMMAND ${program} ${arguments})
        # A test whose initTestCase() is skipped lacks a program that it needs, and says which.
        set_tests_properties("${run}" PROPERTIES
            ${properties} TIMEOUT ${ARG_TIMEOUT}
            SKIP_REGULAR_EXPRESSION "SKIP   : [A-Za-z0-9_:]+::initTestCase"
            ENVIRONMENT "${environment}")
    endforeach()
endfunction()

# lumaphone_add_test_helpers(<Name>...): <Name>.cpp and <Name>.h of this folder, for the tests that are added after it.
function(lumaphone_add_test_helpers)
    lumaphone_test_program_of_folder(program)
    list(TRANSFORM ARGN APPEND .cpp)
    add_library(${program}-helpers STATIC EXCLUDE_FROM_ALL ${ARGN})
    target_link_libraries(${program}-helpers PUBLIC lumaphone_test_support PRIVATE lumaphone_warnings)
    target_compile_options(${program}-helpers PRIVATE -O0 -g1)
endfunction()

function(lumaphone_test_program_of_folder result)
    file(RELATIVE_PATH program "${LUMAPHONE_SOURCE_ROOT}/tests" "${CMAKE_CURRENT_SOURCE_DIR}")
    string(REPLACE "/" "_" program "lumaphone-tests-${program}")
    set(${result} "${program}" PARENT_SCOPE)
endfunction()

# Adds <name>.cpp to the program, which is made with its first source.
function(lumaphone_add_test_source program name isAlone)
    # A test's class needs no other header to be known, which makes this a tenth of what the automatic way takes.
    set(moc "${CMAKE_CURRENT_BINARY_DIR}/moc/${name}.moc")
    file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/moc")
    add_custom_command(OUTPUT "${moc}" VERBATIM DEPENDS "${name}.cpp"
        COMMAND Qt6::moc "${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp" -o "${moc}")
    if(TARGET ${program})
        target_sources(${program} PRIVATE ${name}.cpp "${moc}")
        return()
    endif()
    add_executable(${program} ${name}.cpp "${moc}")
    lumaphone_test_program_of_folder(folder)
    if(TARGET ${folder}-helpers)
        target_link_libraries(${program} PRIVATE ${folder}-helpers)
    endif()
    target_link_libraries(${program} PRIVATE lumaphone_options lumaphone_warnings lumaphone_test_support Qt6::Test)
    if(NOT isAlone)
        target_link_libraries(${program} PRIVATE lumaphone_test_program)
    endif()
    set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests"
        UNITY_BUILD_BATCH_SIZE ${LUMAPHONE_TEST_BATCH_SIZE})
    target_include_directories(${program} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/moc")
    # Most of a test's time goes into its compilation.
    target_compile_options(${program} PRIVATE -O0 -g1)
    if(CMAKE_UNITY_BUILD)
        target_precompile_headers(${program} REUSE_FROM ${LUMAPHONE_TEST_HEADERS})
    endif()
endfunction()

# lumaphone_add_bench(<Name> SOURCES ... [LIBS ...]): a Google Benchmark executable.
function(lumaphone_add_bench name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    if(LUMAPHONE_SANITIZE)
        return()
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE lumaphone_options lumaphone_warnings lumaphone_test_support
        benchmark::benchmark ${ARG_LIBS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bench")
endfunction()

# lumaphone_add_fuzzer(<Name> SOURCES ... [LIBS ...])
# With LUMAPHONE_FUZZ a libFuzzer program. In every build with the address sanitizer a test that runs the inputs of fuzz/corpus/<Name>.
function(lumaphone_add_fuzzer name)
    if(NOT LUMAPHONE_SANITIZE MATCHES "address")
        return()
    endif()
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE lumaphone_options lumaphone_warnings ${ARG_LIBS})
    target_include_directories(${name} PRIVATE "${LUMAPHONE_SOURCE_ROOT}/tests")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fuzz")
    if(LUMAPHONE_FUZZ)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    else()
        target_sources(${name} PRIVATE ReplayMain.cpp)
    endif()
    add_test(NAME "${LUMAPHONE_TEST_PREFIX}${name}"
        COMMAND ${name} -runs=0 "${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name}")
    set_tests_properties("${LUMAPHONE_TEST_PREFIX}${name}" PROPERTIES TIMEOUT 120 ENVIRONMENT "${LUMAPHONE_TEST_ENVIRONMENT}")
endfunction()
