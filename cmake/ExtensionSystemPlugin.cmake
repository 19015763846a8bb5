# SPDX-License-Identifier: BSD-3-Clause
# extensionsystem_add_plugin(<target>
#     METADATA <path to META.INF>
#     [EXTENSION <path to extension.xml>]
#     [OUTPUT_DIRECTORY <dir>]        # default: ${CMAKE_BINARY_DIR}/plugins/<target>
#     [INSTALL_DESTINATION <dir>]     # cmake --install puts <dir>/<target>/<target><suffix>
#     [ALLOW_UNDEFINED]               # link even with symbols that nothing defines
#     SOURCES <files...>)
#
# Builds <OUTPUT_DIRECTORY>/<target><suffix> (EXTENSIONSYSTEM_PLUGIN_SUFFIX, ".so"
# on Linux) as a Qt plug-in module, against the Qt
# the library was built with (ExtensionSystem_QT_MAJOR_VERSION, 5 or 6). The META.INF is
# compiled in as the resource ":/<target>/META-DATA/META.INF": the loader looks
# for it under the library's base name, so the prefix follows the target name.
#
# With INSTALL_DESTINATION, the plug-in installs as <dir>/<target>/<target><suffix> with
# its extension.xml beside it: <dir> is then a host's plugins/ folder (a relative
# <dir> is taken below the install prefix).
#
# The module is linked with -Wl,--no-undefined where the linker knows it: a
# symbol that no library defines is then a link error for the author, not a
# library the framework refuses to load. ALLOW_UNDEFINED turns that off.
include_guard(GLOBAL)

include(CheckCXXSourceCompiles)

# The file suffix of a plug-in library, chosen here once: the library scans for
# it, its tests and tools use it, and every plug-in this helper builds has it.
# A module is ".so" on Linux and ".dll" on Windows as CMake names it; on macOS,
# where CMake would say ".so", the platform's ".dylib".
if(APPLE)
    set(EXTENSIONSYSTEM_PLUGIN_SUFFIX ".dylib")
else()
    set(EXTENSIONSYSTEM_PLUGIN_SUFFIX "${CMAKE_SHARED_MODULE_SUFFIX}")
endif()

# The link option that makes an undefined symbol a link error, or nothing. Clang
# leaves a sanitizer's runtime out of shared objects, whose symbols are then
# undefined on purpose; such builds go without it.
function(_extensionsystem_no_undefined_option result)
    get_directory_property(options COMPILE_OPTIONS)
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND "${CMAKE_CXX_FLAGS};${options}" MATCHES "-fsanitize")
        set(${result} "" PARENT_SCOPE)
        return()
    endif()
    if(NOT DEFINED EXTENSIONSYSTEM_LINKER_NO_UNDEFINED)
        set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,--no-undefined)
        set(CMAKE_REQUIRED_QUIET ON)
        check_cxx_source_compiles("int main() { return 0; }" EXTENSIONSYSTEM_LINKER_NO_UNDEFINED)
    endif()
    if(EXTENSIONSYSTEM_LINKER_NO_UNDEFINED)
        set(${result} -Wl,--no-undefined PARENT_SCOPE)
    else()
        set(${result} "" PARENT_SCOPE)
    endif()
endfunction()

function(extensionsystem_add_plugin target)
    cmake_parse_arguments(ARG "ALLOW_UNDEFINED" "METADATA;EXTENSION;OUTPUT_DIRECTORY;INSTALL_DESTINATION" "SOURCES"
        ${ARGN})
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
    if(NOT DEFINED ExtensionSystem_QT_MAJOR_VERSION)
        set(ExtensionSystem_QT_MAJOR_VERSION 5)
    endif()
    if(ExtensionSystem_QT_MAJOR_VERSION STREQUAL "6")
        qt6_add_resources(resource_sources ${qrc})
    else()
        qt5_add_resources(resource_sources ${qrc})
    endif()

    add_library(${target} MODULE ${ARG_SOURCES} ${resource_sources})
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        PREFIX ""
        SUFFIX "${EXTENSIONSYSTEM_PLUGIN_SUFFIX}"
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        LIBRARY_OUTPUT_DIRECTORY ${ARG_OUTPUT_DIRECTORY}
    )
    target_link_libraries(${target} PRIVATE ExtensionSystem::ExtensionSystem Qt${ExtensionSystem_QT_MAJOR_VERSION}::Core)
    if(NOT ARG_ALLOW_UNDEFINED)
        _extensionsystem_no_undefined_option(no_undefined)
        target_link_options(${target} PRIVATE ${no_undefined})
    endif()

    if(ARG_EXTENSION)
        get_filename_component(extension ${ARG_EXTENSION} ABSOLUTE)
        # copy_if_different keeps the time stamp of an unchanged file, which the
        # extension store uses to tell that it need not parse it again.
        add_custom_command(TARGET ${target} POST_BUILD
            COMMAND ${CMAKE_COMMAND} -E copy_if_different ${extension} ${ARG_OUTPUT_DIRECTORY}/extension.xml
            VERBATIM)
    endif()

    if(ARG_INSTALL_DESTINATION)
        install(TARGETS ${target} LIBRARY DESTINATION ${ARG_INSTALL_DESTINATION}/${target})
        if(ARG_EXTENSION)
            install(FILES ${extension} DESTINATION ${ARG_INSTALL_DESTINATION}/${target} RENAME extension.xml)
        endif()
    endif()
endfunction()
