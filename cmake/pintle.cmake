# Settings every target shares, and the two functions that modules use to declare themselves.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Code is generated from files of the repository alone, so nothing has to be built before.
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

find_program(PINTLE_CCACHE ccache)
if(PINTLE_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${PINTLE_CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${PINTLE_CCACHE})
endif()

# The toolkit's lower-case macros (emit, signals, slots) are ordinary words here.
add_compile_definitions(QT_NO_KEYWORDS)

add_compile_options(-Wall -Wextra -Wshadow -Wnon-virtual-dtor)
if(PINTLE_WERROR)
    # Only where Pintle is developed: the next compiler's new warnings must not stop anybody's build.
    add_compile_options(-Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND PINTLE_SANITIZE)
    # GCC's flow analysis reports uninitialised values that the instrumentation itself introduces.
    add_compile_options(-Wno-maybe-uninitialized)
endif()
if(PINTLE_SANITIZE)
    add_compile_options(-fsanitize=${PINTLE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${PINTLE_SANITIZE})
endif()
if(PINTLE_FUZZ)
    # The engine's counters in every module, so that it sees which inputs lead somewhere new.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

include(cmake/precompiled.cmake)
find_package(fmt REQUIRED)
find_package(Threads REQUIRED)

# One number that grows with the version, because only builds are compared.
math(EXPR PINTLE_BUILD
    "${PROJECT_VERSION_MAJOR} * 10000 + ${PROJECT_VERSION_MINOR} * 100 + ${PROJECT_VERSION_PATCH}")

# pintle_module(name SOURCES ... LINK ... [PRECOMPILED family]): a static library pintle_<name>.
function(pintle_module name)
    cmake_parse_arguments(MODULE "" "PRECOMPILED" "SOURCES;LINK" ${ARGN})
    add_library(pintle_${name} STATIC ${MODULE_SOURCES})
    target_include_directories(pintle_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(pintle_${name} PUBLIC ${MODULE_LINK})
    if(NOT MODULE_PRECOMPILED)
        set(MODULE_PRECOMPILED core)
    endif()
    pintle_precompile(pintle_${name} ${MODULE_PRECOMPILED})
endfunction()

# pintle_test(name SOURCES ... LINK ... [LABELS ...] [TIMEOUT seconds]): a GoogleTest program test_<name>.
function(pintle_test name)
    cmake_parse_arguments(TEST "" "TIMEOUT" "SOURCES;LINK;LABELS" ${ARGN})
    add_executable(test_${name} ${TEST_SOURCES})
    target_link_libraries(test_${name} PRIVATE ${TEST_LINK} pintle_fake GTest::gtest GTest::gmock GTest::gtest_main)
    # What is tested is optimised; the suites themselves take longer to optimise than to run.
    target_compile_options(test_${name} PRIVATE -O0)
    pintle_precompile(test_${name} tests)
    if(NOT TEST_LABELS)
        set(TEST_LABELS core)
    endif()
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 120)
    endif()
    gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60
        PROPERTIES LABELS "${TEST_LABELS}" TIMEOUT ${TEST_TIMEOUT})
endfunction()

# pintle_generated_sources(): a target of that name that makes what the toolkit's tools generate, for programs which
# read the sources without building them. After all other targets.
function(pintle_generated_sources)
    add_custom_target(generated_sources)
    set(folders ${PROJECT_SOURCE_DIR})
    while(folders)
        list(POP_FRONT folders folder)
        get_directory_property(inner DIRECTORY ${folder} SUBDIRECTORIES)
        list(APPEND folders ${inner})
        get_directory_property(targets DIRECTORY ${folder} BUILDSYSTEM_TARGETS)
        foreach(target IN LISTS targets)
            get_target_property(moc ${target} AUTOMOC)
            if(moc)
                add_dependencies(generated_sources ${target}_autogen)
            endif()
        endforeach()
    endwhile()
endfunction()
