# The engine's own test suites for the Windows cross build, run under wine by
# scripts/check-windows-station.sh (one executable per suite: wine starts once per suite).
# GoogleTest is built from the sources of Debian's googletest package, so no host header
# enters the cross build. Test files that exercise what only Linux has (POSIX calls, device
# files, locales made with localedef) stay out.
set(KOVA_GTEST_SOURCE_DIR "/usr/src/googletest" CACHE PATH "GoogleTest sources")
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
add_subdirectory(${KOVA_GTEST_SOURCE_DIR} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)

# A source that includes a POSIX-only header or calls a POSIX-only function is Linux's.
function(kova_portable_sources out)
    set(kept)
    foreach(src IN LISTS ARGN)
        file(READ ${src} text)
        if(NOT text MATCHES "#include <(unistd|fcntl|spawn)\\.h>|#include <sys/|#include <linux/|comma_locale")
            list(APPEND kept ${src})
        endif()
    endforeach()
    set(${out} ${kept} PARENT_SCOPE)
endfunction()

file(GLOB SUPPORT_SOURCES "${CMAKE_CURRENT_SOURCE_DIR}/support/*.cpp")
kova_portable_sources(SUPPORT_SOURCES ${SUPPORT_SOURCES})
add_library(kova_test_support STATIC ${SUPPORT_SOURCES})
target_include_directories(kova_test_support PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(kova_test_support PUBLIC kova_engine gtest)

set(KOVA_WINDOWS_TEST_SUITES)
foreach(suite core tags daq control logging alarms displays)
    file(GLOB suite_sources "${CMAKE_CURRENT_SOURCE_DIR}/${suite}/*.cpp")
    kova_portable_sources(suite_sources ${suite_sources})
    if(suite_sources)
        add_executable(${suite}_tests ${suite_sources})
        target_link_libraries(${suite}_tests PRIVATE kova_test_support gtest_main)
        target_link_options(${suite}_tests PRIVATE -static)
        # GCC 12 at -O2 warns falsely about std::string's insert ("x" + s) overlapping
        # itself (a known -Wrestrict false positive of that compiler).
        target_compile_options(${suite}_tests PRIVATE -Wno-restrict)
        list(APPEND KOVA_WINDOWS_TEST_SUITES ${suite}_tests)
    endif()
endforeach()
add_custom_target(windows_tests DEPENDS ${KOVA_WINDOWS_TEST_SUITES})
