# Helpers for DLLs whose stdcall exports carry their plain names.
#
# The .def file lists every export with its decoration (Name@bytes); the DLL is linked with
# --kill-at so that the export table holds the plain names. ld's own import library then lacks
# the decorated aliases that clients compiled against the headers refer to, so the import library
# is written again by dlltool from the same .def file.

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

# kv_add_stdcall_dll(target def_file source...)
function(kv_add_stdcall_dll target def_file)
    add_library(${target} SHARED ${ARGN})
    set_target_properties(${target} PROPERTIES PREFIX "" LINK_DEPENDS ${def_file})
    target_link_options(${target} PRIVATE ${def_file} -Wl,--kill-at)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${KV_DLLTOOL} -d ${def_file} -D $<TARGET_FILE_NAME:${target}>
                -l $<TARGET_LINKER_FILE:${target}> -k
        VERBATIM)
endfunction()

# kv_use_comctl6(target): links the manifest that binds a program to common controls version 6,
# as a host's manifest binds it.
set(KV_MANIFEST_DIR ${CMAKE_CURRENT_LIST_DIR}/manifest)
function(kv_use_comctl6 target)
    set_source_files_properties(${KV_MANIFEST_DIR}/comctl6.rc PROPERTIES
        OBJECT_DEPENDS ${KV_MANIFEST_DIR}/comctl6.manifest)
    target_sources(${target} PRIVATE ${KV_MANIFEST_DIR}/comctl6.rc)
endfunction()
