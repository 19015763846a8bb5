# SPDX-License-Identifier: BSD-3-Clause
# Driven by CTest; see CMakeLists.txt beside this file.
cmake_policy(VERSION 3.16)
include(${CMAKE_CURRENT_LIST_DIR}/../runcommand.cmake)

file(REMOVE_RECURSE ${ES_PREFIX} ${ES_PREFIX}-moved ${ES_OUTSIDE_BUILD} ${ES_OUTSIDE_BUILD}-undefined)
es_run(${CMAKE_COMMAND} --install ${ES_BUILD_DIR} --prefix ${ES_PREFIX})

foreach(path
        include/ExtensionSystem/extensionsystem_global.h
        include/ExtensionSystem/plugin/pluginmetadata.h
        include/ExtensionSystem/plugin/ipluginactivator.h
        include/ExtensionSystem/PluginFramework
        include/ExtensionSystem/Object
        include/ExtensionSystem/objecttree/object.h
        lib/cmake/ExtensionSystem/ExtensionSystemConfig.cmake
        lib/cmake/ExtensionSystem/ExtensionSystemConfigVersion.cmake
        lib/cmake/ExtensionSystem/ExtensionSystemPlugin.cmake)
    if(NOT EXISTS ${ES_PREFIX}/${path})
        message(FATAL_ERROR "not installed: ${path}")
    endif()
endforeach()
file(GLOB_RECURSE private_headers ${ES_PREFIX}/include/*_p.h)
if(private_headers)
    message(FATAL_ERROR "private headers installed: ${private_headers}")
endif()
# One folder of ours below include/, and no two paths that a case-insensitive
# file system would take for one.
file(GLOB top RELATIVE ${ES_PREFIX}/include ${ES_PREFIX}/include/*)
if(NOT top STREQUAL "ExtensionSystem")
    message(FATAL_ERROR "include/ holds more than ExtensionSystem/: ${top}")
endif()
file(GLOB_RECURSE installed LIST_DIRECTORIES true RELATIVE ${ES_PREFIX} ${ES_PREFIX}/include/*
    ${ES_PREFIX}/lib/* ${ES_PREFIX}/bin/*)
set(seen)
foreach(path IN LISTS installed)
    string(TOLOWER "${path}" folded)
    if(folded IN_LIST seen)
        message(FATAL_ERROR "two installed paths differ only in case: ${path}")
    endif()
    list(APPEND seen "${folded}")
endforeach()

string(REPLACE ";" " " flags "${ES_EXTRA_FLAGS}")
es_run(${CMAKE_COMMAND} -S ${ES_OUTSIDE_SOURCE} -B ${ES_OUTSIDE_BUILD}
    -DCMAKE_PREFIX_PATH=${ES_PREFIX}
    -DCMAKE_CXX_COMPILER=${ES_CXX_COMPILER}
    -DES_EXPECTED_QT_MAJOR_VERSION=${ES_QT_MAJOR_VERSION}
    "-DCMAKE_CXX_FLAGS=${flags}"
    "-DCMAKE_EXE_LINKER_FLAGS=${flags}"
    "-DCMAKE_MODULE_LINKER_FLAGS=${flags}")
es_run(${CMAKE_COMMAND} --build ${ES_OUTSIDE_BUILD} -j2)
es_run(${ES_OUTSIDE_BUILD}/check_plugin ${ES_OUTSIDE_BUILD}/plugins/outside.plugin/outside.plugin${ES_PLUGIN_SUFFIX})
if(NOT es_run_output MATCHES "on Qt ${ES_QT_MAJOR_VERSION}\\.")
    message(FATAL_ERROR "the outside project does not run on Qt ${ES_QT_MAJOR_VERSION}: ${es_run_output}")
endif()
message(STATUS "${es_run_output}")
file(STRINGS ${ES_PREFIX}/lib/cmake/ExtensionSystem/ExtensionSystemConfig.cmake config_qt
    REGEX "set\\(ExtensionSystem_QT_MAJOR_VERSION")
if(NOT config_qt STREQUAL "set(ExtensionSystem_QT_MAJOR_VERSION ${ES_QT_MAJOR_VERSION})")
    message(FATAL_ERROR "the package config does not name Qt ${ES_QT_MAJOR_VERSION}: ${config_qt}")
endif()

# INSTALL_DESTINATION: the plug-in and its extension file, ready for a host's plugins/.
set(app ${ES_OUTSIDE_BUILD}/installed/app)
es_run(${CMAKE_COMMAND} --install ${ES_OUTSIDE_BUILD} --prefix ${ES_OUTSIDE_BUILD}/installed)
foreach(file outside.plugin${ES_PLUGIN_SUFFIX} extension.xml)
    if(NOT EXISTS ${app}/plugins/outside.plugin/${file})
        message(FATAL_ERROR "not installed: app/plugins/outside.plugin/${file}")
    endif()
endforeach()
es_run(${ES_OUTSIDE_BUILD}/check_plugin ${app}/plugins/outside.plugin/outside.plugin${ES_PLUGIN_SUFFIX})

# A prefix moved elsewhere still runs its tools: they find the library relative to themselves.
file(RENAME ${ES_PREFIX} ${ES_PREFIX}-moved)
execute_process(COMMAND ${ES_PREFIX}-moved/bin/es-inspect ${app}
    RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
file(RENAME ${ES_PREFIX}-moved ${ES_PREFIX})
if(NOT rc EQUAL 0 OR NOT out MATCHES "symbolic: +outside.plugin" OR NOT out MATCHES "resolved, position 1")
    message(FATAL_ERROR "es-inspect of the moved prefix (${rc}):\n${out}\n${err}")
endif()
message(STATUS "es-inspect runs from a moved prefix and resolves the installed plug-in")

# The helper links with --no-undefined: an author meets a missing symbol at build time.
es_run(${CMAKE_COMMAND} -S ${ES_OUTSIDE_SOURCE} -B ${ES_OUTSIDE_BUILD}-undefined
    -DCMAKE_PREFIX_PATH=${ES_PREFIX}
    -DCMAKE_CXX_COMPILER=${ES_CXX_COMPILER}
    -DES_CHECK_NO_UNDEFINED=ON
    "-DCMAKE_CXX_FLAGS=${flags}"
    "-DCMAKE_MODULE_LINKER_FLAGS=${flags}")
execute_process(COMMAND ${CMAKE_COMMAND} --build ${ES_OUTSIDE_BUILD}-undefined --target outside.undefined
    RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(rc EQUAL 0 OR NOT "${out}${err}" MATCHES "es_outside_undefined")
    message(FATAL_ERROR "a plug-in with an undefined symbol linked (${rc}):\n${out}\n${err}")
endif()
message(STATUS "outside.undefined refused at link time, as it should be")
