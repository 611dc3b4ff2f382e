# Helpers for DLLs whose stdcall exports carry their plain names.
#
# The .def file lists every export with its decoration (Name@bytes); the DLL is linked with
# --kill-at so that the export table holds the plain names. ld's own import library then lacks
# the decorated aliases that clients compiled against the headers refer to, so the import library
# is written again by dlltool from the same .def file. An MSVC-style import library (name.lib)
# is written beside it by llvm-dlltool: it maps the names MSVC emits (_Name@bytes) to the plain
# exports.

# The toolchain file names dlltool; a parent project's toolchain may not, so look beside the
# compiler (i686-w64-mingw32-gcc-posix -> i686-w64-mingw32-dlltool).
if(NOT KV_DLLTOOL)
    get_filename_component(_kv_compiler_name "${CMAKE_C_COMPILER}" NAME)
    string(REGEX REPLACE "gcc(-[a-z0-9.]+)?(\\.exe)?$" "" _kv_tool_prefix "${_kv_compiler_name}")
    find_program(KV_DLLTOOL NAMES ${_kv_tool_prefix}dlltool dlltool REQUIRED)
endif()

option(KVKIT_MSVC_IMPORT_LIBRARIES "Write an MSVC import library (name.lib) beside each import library (needs llvm-dlltool)" ON)
if(KVKIT_MSVC_IMPORT_LIBRARIES)
    find_program(KV_LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)
endif()

# kv_merge_def_fragments(output library fragment...): one module-definition file made of the
# EXPORTS lines of every fragment, in the order given.
function(kv_merge_def_fragments output library)
    set(text "LIBRARY ${library}\nEXPORTS\n")
    foreach(fragment ${ARGN})
        file(READ ${fragment} body)
        string(APPEND text "${body}\n")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${fragment})
    endforeach()
    file(CONFIGURE OUTPUT ${output} CONTENT "${text}" @ONLY)
endfunction()

# kv_add_stdcall_dll(target def_file source...): the DLL, its MinGW import library and, with
# KVKIT_MSVC_IMPORT_LIBRARIES, its MSVC import library, whose path the target property
# KV_MSVC_IMPORT_LIBRARY holds.
function(kv_add_stdcall_dll target def_file)
    add_library(${target} SHARED ${ARGN})
    set_target_properties(${target} PROPERTIES PREFIX "" LINK_DEPENDS ${def_file})
    target_link_options(${target} PRIVATE ${def_file} -Wl,--kill-at)
    set(msvc_commands)
    if(KVKIT_MSVC_IMPORT_LIBRARIES)
        set(msvc_library $<TARGET_LINKER_FILE_DIR:${target}>/$<TARGET_FILE_BASE_NAME:${target}>.lib)
        set(msvc_commands COMMAND ${KV_LLVM_DLLTOOL} -m i386 -d ${def_file}
                                  -D $<TARGET_FILE_NAME:${target}> -l ${msvc_library} -k)
        set_target_properties(${target} PROPERTIES KV_MSVC_IMPORT_LIBRARY ${msvc_library})
    endif()
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${KV_DLLTOOL} -d ${def_file} -D $<TARGET_FILE_NAME:${target}>
                -l $<TARGET_LINKER_FILE:${target}> -k
        ${msvc_commands}
        VERBATIM)
endfunction()

# kv_add_version_resource(target description): a version resource with the library's version
# numbers, the target's file name and the description.
set(KV_VERSION_TEMPLATE ${CMAKE_CURRENT_LIST_DIR}/version.rc.in)
function(kv_add_version_resource target description)
    get_target_property(type ${target} TYPE)
    get_target_property(name ${target} OUTPUT_NAME)
    if(NOT name)
        set(name ${target})
    endif()
    set(KV_FILE_TYPE VFT_DLL)
    set(KV_FILE_NAME ${name}.dll)
    if(type STREQUAL "EXECUTABLE")
        set(KV_FILE_TYPE VFT_APP)
        set(KV_FILE_NAME ${name}.exe)
    endif()
    set(KV_INTERNAL_NAME ${name})
    set(KV_DESCRIPTION "${description}")
    set(output ${CMAKE_CURRENT_BINARY_DIR}/version/${target}.rc)
    configure_file(${KV_VERSION_TEMPLATE} ${output} @ONLY)
    target_sources(${target} PRIVATE ${output})
endfunction()

# kv_use_comctl6(target): links the manifest that binds a program to common controls version 6,
# as a host's manifest binds it.
set(KV_MANIFEST_DIR ${CMAKE_CURRENT_LIST_DIR}/manifest)
function(kv_use_comctl6 target)
    set_source_files_properties(${KV_MANIFEST_DIR}/comctl6.rc PROPERTIES
        OBJECT_DEPENDS ${KV_MANIFEST_DIR}/comctl6.manifest)
    target_sources(${target} PRIVATE ${KV_MANIFEST_DIR}/comctl6.rc)
endfunction()
