# Install rules, the CMake package (find_package(kvkit CONFIG)) and the ZIP made by CPack.
#
# Layout of an installed kvkit:
#   bin/             kvkit.dll, the in-house library DLLs (stand-ins here), the sample modules
#   include/         the kvkit headers and those of the in-house libraries
#   lib/             MinGW (libname.dll.a) and MSVC (name.lib) import libraries
#   lib/cmake/kvkit/ the package files, the MinGW toolchain file and the common-controls manifest
#   samples/         sources of the sample language and resource modules
#   examples/        sample hosts
#   doc/             the host guide and the API reference
#
# Every DLL target made in standins/ is packaged as an in-house library, every one made in
# samples/ as a sample module, so that new ones are picked up without editing this file.

include(CMakePackageConfigHelpers)

set(KV_PACKAGE_DIR lib/cmake/kvkit)

function(kv_dll_targets_of folder result)
    get_property(targets DIRECTORY ${PROJECT_SOURCE_DIR}/${folder} PROPERTY BUILDSYSTEM_TARGETS)
    set(dlls)
    foreach(target ${targets})
        get_target_property(type ${target} TYPE)
        if(type STREQUAL "SHARED_LIBRARY" OR type STREQUAL "MODULE_LIBRARY")
            list(APPEND dlls ${target})
        endif()
    endforeach()
    set(${result} ${dlls} PARENT_SCOPE)
endfunction()

# kv_file_base_name(target result): the DLL's file name without ".dll", as the build names it.
function(kv_file_base_name target result)
    get_target_property(prefix ${target} PREFIX)
    if(prefix STREQUAL "prefix-NOTFOUND")
        set(prefix ${CMAKE_SHARED_LIBRARY_PREFIX})
    endif()
    get_target_property(name ${target} OUTPUT_NAME)
    if(NOT name)
        set(name ${target})
    endif()
    set(${result} ${prefix}${name} PARENT_SCOPE)
endfunction()

kv_dll_targets_of(standins KV_STANDIN_TARGETS)
kv_dll_targets_of(samples KV_SAMPLE_TARGETS)

# The same names as the package's imported targets, for hosts that add kvkit as a subdirectory.
foreach(target ${KV_STANDIN_TARGETS} ${KV_SAMPLE_TARGETS})
    add_library(kvkit::${target} ALIAS ${target})
endforeach()

# The package's manifest helper, for hosts that add kvkit as a subdirectory.
function(kvkit_use_comctl6 target)
    kv_use_comctl6(${target})
endfunction()

# Version resources: the library's own is in res/kvkit.rc.
foreach(target ${KV_STANDIN_TARGETS})
    kv_add_version_resource(${target} "Stand-in for the suite's ${target} library")
endforeach()
foreach(target ${KV_SAMPLE_TARGETS})
    kv_add_version_resource(${target} "kvkit sample host module (${target})")
endforeach()

# --- install rules ----------------------------------------------------------------------------

# One call of the package's import macro per linkable DLL, naming the packaged DLLs it links to
# (so that $<TARGET_RUNTIME_DLLS:...> of a host brings them along).
set(KV_PACKAGE_IMPORTS "")
foreach(target kvkit ${KV_STANDIN_TARGETS})
    install(TARGETS ${target} RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
    get_target_property(msvc_library ${target} KV_MSVC_IMPORT_LIBRARY)
    if(msvc_library)
        install(FILES ${msvc_library} DESTINATION lib)
    endif()
    get_target_property(links ${target} LINK_LIBRARIES)
    set(dependencies)
    foreach(link ${links})
        if(link IN_LIST KV_STANDIN_TARGETS)
            list(APPEND dependencies kvkit::${link})
        endif()
    endforeach()
    list(JOIN dependencies " " dependencies)
    kv_file_base_name(${target} file)
    string(APPEND KV_PACKAGE_IMPORTS "_kvkit_import_dll(${target} ${file} ${dependencies})\n")
endforeach()
set(KV_PACKAGE_MODULES "")
foreach(target ${KV_SAMPLE_TARGETS})
    install(FILES $<TARGET_FILE:${target}> DESTINATION bin)
    kv_file_base_name(${target} file)
    string(APPEND KV_PACKAGE_MODULES "_kvkit_import_module(${target} ${file})\n")
endforeach()

# The module definition, for tools that make import libraries of their own.
install(FILES ${PROJECT_BINARY_DIR}/kvkit.def DESTINATION lib)

file(GLOB KV_PUBLIC_HEADERS CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/include/*.h ${PROJECT_SOURCE_DIR}/standins/*/*.h)
install(FILES ${KV_PUBLIC_HEADERS} DESTINATION include)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/samples/ DESTINATION samples
        PATTERN CMakeLists.txt EXCLUDE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION examples)
install(FILES ${PROJECT_SOURCE_DIR}/docs/host-guide.md DESTINATION doc)
# Written by scripts/api-reference.sh, which scripts/package.sh runs first.
install(DIRECTORY ${PROJECT_BINARY_DIR}/doc/api/html/ DESTINATION doc/api OPTIONAL)

configure_file(${PROJECT_SOURCE_DIR}/cmake/kvkitConfig.cmake.in
               ${PROJECT_BINARY_DIR}/package/kvkitConfig.cmake @ONLY)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/kvkitConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/package/kvkitConfig.cmake
              ${PROJECT_BINARY_DIR}/package/kvkitConfigVersion.cmake
              ${PROJECT_SOURCE_DIR}/cmake/mingw-i686.cmake
        DESTINATION ${KV_PACKAGE_DIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/cmake/manifest/ DESTINATION ${KV_PACKAGE_DIR}/manifest)

# --- the ZIP ----------------------------------------------------------------------------------

if(PROJECT_IS_TOP_LEVEL)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_NAME kvkit)
    set(CPACK_PACKAGE_VENDOR "kvkit")
    set(CPACK_PACKAGE_FILE_NAME kvkit-${PROJECT_VERSION}-win32)
    set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/dist)
    set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
    set(CPACK_PACKAGE_CHECKSUM SHA256)
    include(CPack)
endif()
