# SPDX-License-Identifier: BSD-3-Clause
# Reads the dynamic symbol table of the installed library and fails on any
# symbol that does not belong to one of its public classes: nothing of
# ExtensionSystem::Internal, nothing of an internal class, nothing foreign.
#
#   cmake -DLIBRARY=<file> -DNM=<nm> "-DCLASSES=<subsystem/Class;...>" -P check_exports.cmake
cmake_policy(VERSION 3.16)
execute_process(COMMAND ${NM} -D -C --defined-only ${LIBRARY}
    RESULT_VARIABLE rc OUTPUT_VARIABLE table ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${NM} failed on ${LIBRARY}: ${err}")
endif()

set(public)
foreach(entry IN LISTS CLASSES)
    get_filename_component(class ${entry} NAME)
    list(APPEND public ${class})
endforeach()

string(REPLACE ";" "\\;" table "${table}")
string(REPLACE "\n" ";" lines "${table}")
set(wrong)
set(found)
foreach(line IN LISTS lines)
    # "<address> <type> <name>"; the name may hold spaces.
    if(NOT line MATCHES "^[0-9a-f]+ [A-Za-z] (.*)$")
        continue()
    endif()
    set(symbol "${CMAKE_MATCH_1}")
    set(name "${symbol}")
    foreach(prefix "vtable for " "typeinfo for " "typeinfo name for " "non-virtual thunk to "
            "virtual thunk to " "guard variable for ")
        string(FIND "${name}" "${prefix}" at)
        if(at EQUAL 0)
            string(LENGTH "${prefix}" length)
            string(SUBSTRING "${name}" ${length} -1 name)
        endif()
    endforeach()
    # The owner is what comes before the parameter list.
    string(FIND "${name}" "(" paren)
    if(paren GREATER -1)
        string(SUBSTRING "${name}" 0 ${paren} name)
    endif()
    if(name MATCHES "ExtensionSystem::Internal")
        list(APPEND wrong "${symbol}   (internal)")
    elseif(name MATCHES "^ExtensionSystem::([A-Za-z_0-9]+)")
        list(FIND public "${CMAKE_MATCH_1}" index)
        if(index EQUAL -1)
            list(APPEND wrong "${symbol}   (${CMAKE_MATCH_1} is not a public class)")
        else()
            list(APPEND found ${CMAKE_MATCH_1})
        endif()
    elseif(NOT name MATCHES "^_(init|fini)$")
        list(APPEND wrong "${symbol}   (not of this library)")
    endif()
endforeach()

if(wrong)
    list(LENGTH wrong count)
    list(JOIN wrong "\n  " listing)
    message(FATAL_ERROR "${LIBRARY} exports ${count} symbols it must not:\n  ${listing}")
endif()
# An empty table would pass the check above: every class with code must show.
list(REMOVE_DUPLICATES found)
foreach(class PluginFramework PluginContext PluginManager ServiceRegistration ExtensionPoint Object)
    if(NOT class IN_LIST found)
        message(FATAL_ERROR "${LIBRARY} does not export ${class}")
    endif()
endforeach()
list(LENGTH found classes)
message(STATUS "${LIBRARY}: only public classes exported (${classes} classes with symbols)")
