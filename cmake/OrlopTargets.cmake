# orlop_library(FOLDER LINKS ...): the static library of one folder under src/, from all its
# sources. The folders it may use are named in scripts/layers.json and checked in the tests.
function(orlop_library folder)
    cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS
         "${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp" "${CMAKE_SOURCE_DIR}/src/${folder}/*.h")
    add_library(orlop_${folder} STATIC ${sources} "${CMAKE_SOURCE_DIR}/cmake/empty.cpp")
    target_link_libraries(orlop_${folder} PUBLIC orlop_conventions ${arg_LINKS})
endfunction()

# orlop_test(FOLDER [LINKS ...] [LABELS ...]): one GoogleTest executable from tests/FOLDER,
# linked with the library of the same name and with the test support that it asks for.
function(orlop_test folder)
    cmake_parse_arguments(arg "" "TIMEOUT" "LINKS;LABELS" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp")
    if(NOT sources)
        return()
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(test_${folder} ${sources})
    target_include_directories(test_${folder} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_link_libraries(test_${folder} PRIVATE orlop_conventions ${arg_LINKS} orlop_test_support
                          GTest::gmock)
    gtest_discover_tests(test_${folder} DISCOVERY_MODE PRE_TEST
        PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${folder};${arg_LABELS}")
endfunction()
