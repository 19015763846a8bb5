# extensionsystem_add_plugin(<target>
#     METADATA <path to META.INF>
#     [EXTENSION <path to extension.xml>]
#     [OUTPUT_DIRECTORY <dir>]        # default: ${CMAKE_BINARY_DIR}/plugins/<target>
#     SOURCES <files...>)
#
# Builds <OUTPUT_DIRECTORY>/<target>.so as a Qt plug-in module. The META.INF is
# compiled in as the resource ":/<target>/META-DATA/META.INF": the loader looks
# for it under the library's base name, so the prefix follows the target name.
include_guard(GLOBAL)

function(extensionsystem_add_plugin target)
    cmake_parse_arguments(ARG "" "METADATA;EXTENSION;OUTPUT_DIRECTORY" "SOURCES" ${ARGN})
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "extensionsystem_add_plugin(${target}): unknown arguments: ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT ARG_METADATA)
        message(FATAL_ERROR "extensionsystem_add_plugin(${target}): METADATA is required")
    endif()
    if(NOT ARG_SOURCES)
        message(FATAL_ERROR "extensionsystem_add_plugin(${target}): SOURCES is required")
    endif()
    if(NOT ARG_OUTPUT_DIRECTORY)
        set(ARG_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/plugins/${target})
    endif()

    get_filename_component(metadata ${ARG_METADATA} ABSOLUTE)
    string(MAKE_C_IDENTIFIER "${target}" resource_name)
    set(qrc ${CMAKE_CURRENT_BINARY_DIR}/${resource_name}_metadata.qrc)
    # Written at configure time so that rcc sees the dependency on the META.INF;
    # configure_file() leaves an unchanged .qrc untouched.
    file(WRITE ${qrc}.in
"<!DOCTYPE RCC><RCC version=\"1.0\">
<qresource prefix=\"/${target}/META-DATA\">
    <file alias=\"META.INF\">${metadata}</file>
</qresource>
</RCC>
")
    configure_file(${qrc}.in ${qrc} COPYONLY)
    qt5_add_resources(resource_sources ${qrc})

    add_library(${target} MODULE ${ARG_SOURCES} ${resource_sources})
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        PREFIX ""
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        LIBRARY_OUTPUT_DIRECTORY ${ARG_OUTPUT_DIRECTORY}
    )
    target_link_libraries(${target} PRIVATE ExtensionSystem::ExtensionSystem Qt5::Core)

    if(ARG_EXTENSION)
        get_filename_component(extension ${ARG_EXTENSION} ABSOLUTE)
        # copy_if_different keeps the time stamp of an unchanged file, which the
        # extension store uses to tell that it need not parse it again.
        add_custom_command(TARGET ${target} POST_BUILD
            COMMAND ${CMAKE_COMMAND} -E copy_if_different ${extension} ${ARG_OUTPUT_DIRECTORY}/extension.xml
            VERBATIM)
    endif()
endfunction()
