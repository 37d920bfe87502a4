# For builds in unity: the sources of one folder of a layer together. So it does not depend on what
# else there is, and in what order, with which sources one shares its names.
function(group_by_folder layer)
    foreach(source IN LISTS ARGN)
        cmake_path(GET source PARENT_PATH folder)
        file(RELATIVE_PATH group "${CMAKE_SOURCE_DIR}/src" "${folder}")
        string(REPLACE "/" "_" group "${group}")
        set_source_files_properties("${source}" PROPERTIES UNITY_GROUP "${group}")
    endforeach()
    set_target_properties(orlop_${layer} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()

# orlop_library(FOLDER LINKS ...): the static library of one folder under src/, from all its
# sources. The folders it may use are named in scripts/layers.json and checked in the tests.
# HEADERS names the target whose precompiled headers it is built with. MOC: it has classes with
# Q_OBJECT; looking for them takes a second or two of each build from nothing.
function(orlop_library folder)
    cmake_parse_arguments(arg "MOC" "HEADERS" "LINKS" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp")
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${folder}/*.h")
    add_library(orlop_${folder} STATIC ${sources} ${headers})
    set_target_properties(orlop_${folder} PROPERTIES AUTOMOC "${arg_MOC}")
    group_by_folder(${folder} ${sources})
    # Built only by scripts/check-layers: each header by itself, without what is precompiled.
    target_sources(orlop_${folder} PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_SOURCE_DIR}/src"
                   FILES ${headers})
    set_target_properties(orlop_${folder} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
    target_link_libraries(orlop_${folder} PUBLIC orlop_conventions ${arg_LINKS})
    if(arg_HEADERS)
        target_precompile_headers(orlop_${folder} REUSE_FROM ${arg_HEADERS})
    endif()
endfunction()

# orlop_test(FOLDER [LINKS ...] [LABELS ...]): one GoogleTest executable from tests/FOLDER,
# linked with the library of the same name and with the test support that it asks for.
# HEADERS as for orlop_library; without it, those of the tests without Gui.
function(orlop_test folder)
    cmake_parse_arguments(arg "" "TIMEOUT;HEADERS" "LINKS;LABELS" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp")
    if(NOT sources)
        return()
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if(NOT arg_HEADERS)
        set(arg_HEADERS orlop_test_headers)
    endif()
    add_executable(test_${folder} ${sources})
    target_include_directories(test_${folder} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_link_libraries(test_${folder} PRIVATE orlop_conventions ${arg_LINKS} orlop_test_support
                          GTest::gmock)
    target_precompile_headers(test_${folder} REUSE_FROM ${arg_HEADERS})
    gtest_discover_tests(test_${folder} DISCOVERY_MODE PRE_TEST
        PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${folder};${arg_LABELS}")
endfunction()
