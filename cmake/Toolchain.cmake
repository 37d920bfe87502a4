# Compiler settings that every target shares.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

find_program(ORLOP_CCACHE ccache)
if(ORLOP_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # What a precompiled header needs of the cache, and one cache for all clones.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_ctime,include_file_mtime
        "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" "${ORLOP_CCACHE}")
    if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
    else()
        add_compile_options(-fpch-preprocess)
    endif()
endif()
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")
find_program(ORLOP_MOLD mold)
if(ORLOP_MOLD)
    add_link_options(-fuse-ld=mold)
endif()

# Distributions bring their own flags for what they build, which are the same or stricter.
if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT ORLOP_SANITIZE)
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong
                        -fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
        add_compile_options(-fcf-protection)
    endif()
    add_link_options(-Wl,-z,relro,-z,now)
endif()
include(CheckPIESupported)
check_pie_supported()

if(ORLOP_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(ORLOP_SANITIZE)
    add_compile_options("-fsanitize=${ORLOP_SANITIZE}" -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    add_link_options("-fsanitize=${ORLOP_SANITIZE}")
endif()

# What only our own code must obey.
add_library(orlop_conventions INTERFACE)
target_compile_options(orlop_conventions INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -pthread $<$<BOOL:${ORLOP_WERROR}>:-Werror>)
if(CMAKE_UNITY_BUILD)
    # What they say of a source does not hold where others stand before it.
    target_compile_options(orlop_conventions INTERFACE -Wno-shadow
                           $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()
target_compile_definitions(orlop_conventions INTERFACE
    QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY QT_NO_CONTEXTLESS_CONNECT
    ORLOP_VERSION="${PROJECT_VERSION}")
target_include_directories(orlop_conventions INTERFACE "${CMAKE_SOURCE_DIR}/src")
