# What every target of this project is built with, and the two helpers that make its targets.

find_program(TARNIX_CCACHE ccache)
if(TARNIX_CCACHE)
  # With paths taken as relative, every checkout and every build directory shares what any of them has compiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
      ${TARNIX_CCACHE})
endif()
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# With and without sanitizers.
add_library(tarnix_plain_options INTERFACE)
add_library(tarnix_options INTERFACE)
target_link_libraries(tarnix_options INTERFACE tarnix_plain_options)
target_compile_features(tarnix_plain_options INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)
target_compile_options(tarnix_plain_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${TARNIX_WARNINGS_AS_ERRORS}>:-Werror>
  # Never -fPIE: it lets the linker copy Qt's meta objects into the program, where Qt no longer takes them for its own.
  -fPIC)

if(TARNIX_SANITIZE)
  target_compile_options(tarnix_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                         -fno-omit-frame-pointer)
  target_link_options(tarnix_options INTERFACE -fsanitize=address,undefined)
elseif(TARNIX_SANITIZE_THREAD)
  target_compile_options(tarnix_options INTERFACE -fsanitize=thread)
  target_link_options(tarnix_options INTERFACE -fsanitize=thread)
elseif(TARNIX_FUZZ)
  target_compile_options(tarnix_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                         -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(tarnix_options INTERFACE -fsanitize=address,undefined)
elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_options(tarnix_plain_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -D_GLIBCXX_ASSERTIONS
                         -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
  target_link_options(tarnix_plain_options INTERFACE -pie -Wl,-z,relro,-z,now -Wl,-z,noexecstack)
endif()

# A folder of the source tree as a library. It sees its own headers and those of the targets it is linked to; all includes are
# written from `src/`.
function(tarnix_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE tarnix_options ${ARG_PRIVATE_LINKS})
endfunction()

# A test program whose tests ctest runs one by one.
function(tarnix_test name)
  cmake_parse_arguments(ARG "NO_MAIN" "LABEL;TIMEOUT" "SOURCES;LINKS;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  if(TARNIX_UNITY_TESTS)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 16)
  endif()
  target_link_libraries(${name} PRIVATE tarnix_options ${ARG_LINKS} GTest::gmock)
  if(NOT ARG_NO_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gmock_main)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
  endif()
  gtest_discover_tests(${name} NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABEL}" ENVIRONMENT "${ARG_ENVIRONMENT}")
endfunction()
