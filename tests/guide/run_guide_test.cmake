# SPDX-License-Identifier: BSD-3-Clause
# Driven by CTest; see CMakeLists.txt beside this file.
include(${CMAKE_CURRENT_LIST_DIR}/../runcommand.cmake)

file(REMOVE_RECURSE ${ES_WORK})
file(MAKE_DIRECTORY ${ES_WORK})

# Every block preceded by "<!-- file: path -->" becomes that file. Semicolons are
# masked while the text goes through CMake lists.
function(es_extract_files page expected)
    file(READ ${page} text)
    string(REPLACE ";" "@SEMICOLON@" text "${text}")
    string(REGEX MATCHALL "<!-- file: [^ ]+ -->\n```[a-z]*\n[^`]*```" blocks "${text}")
    set(count 0)
    foreach(block IN LISTS blocks)
        string(REGEX REPLACE "^<!-- file: ([^ ]+) -->.*" "\\1" path "${block}")
        string(REGEX REPLACE "^<!-- file: [^ ]+ -->\n```[a-z]*\n" "" content "${block}")
        string(REGEX REPLACE "```$" "" content "${content}")
        string(REPLACE "@SEMICOLON@" ";" content "${content}")
        file(WRITE ${ES_WORK}/${path} "${content}")
        math(EXPR count "${count} + 1")
    endforeach()
    if(NOT count EQUAL expected)
        message(FATAL_ERROR "expected ${expected} files in ${page}, found ${count}")
    endif()
endfunction()
es_extract_files(${ES_GUIDE} 4)
es_extract_files(${ES_README} 4)

es_run(${CMAKE_COMMAND} --install ${ES_BUILD_DIR} --prefix ${ES_WORK}/prefix)
string(REPLACE ";" " " flags "${ES_EXTRA_FLAGS}")
es_run(${CMAKE_COMMAND} -S ${ES_WORK}/hello -B ${ES_WORK}/hello-build
    -DCMAKE_PREFIX_PATH=${ES_WORK}/prefix
    -DCMAKE_CXX_COMPILER=${ES_CXX_COMPILER}
    "-DCMAKE_CXX_FLAGS=${flags}"
    "-DCMAKE_MODULE_LINKER_FLAGS=${flags}")
es_run(${CMAKE_COMMAND} --build ${ES_WORK}/hello-build -j2)

# The README's plug-in and host, as its CMake lines build them in a project of their own.
file(WRITE ${ES_WORK}/readme/CMakeLists.txt "cmake_minimum_required(VERSION 3.16)
project(Readme LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 17)
include(plugin-and-host.cmake)
")
es_run(${CMAKE_COMMAND} -S ${ES_WORK}/readme -B ${ES_WORK}/readme-build
    -DCMAKE_PREFIX_PATH=${ES_WORK}/prefix
    -DCMAKE_CXX_COMPILER=${ES_CXX_COMPILER}
    "-DCMAKE_CXX_FLAGS=${flags}"
    "-DCMAKE_EXE_LINKER_FLAGS=${flags}"
    "-DCMAKE_MODULE_LINKER_FLAGS=${flags}")
es_run(${CMAKE_COMMAND} --build ${ES_WORK}/readme-build -j2)
# The host runs until it is told to quit, as a host does: it is stopped once the
# plug-in has had time to say hello.
execute_process(COMMAND ${ES_WORK}/readme-build/host TIMEOUT 5
    WORKING_DIRECTORY ${ES_WORK}/readme-build OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT err MATCHES "hello from \"demo.hello\"")
    message(FATAL_ERROR "the README's host did not start its plug-in:\n${out}\n${err}")
endif()

# An application directory: the example host, its plug-ins and configuration, and the new plug-in.
get_filename_component(demo_dir ${ES_HOST} DIRECTORY)
set(app ${ES_WORK}/app)
file(MAKE_DIRECTORY ${app})
file(COPY ${ES_HOST} ${demo_dir}/plugins DESTINATION ${app})
file(COPY ${demo_dir}/config/es-demo-host/config.ini DESTINATION ${app}/config/es-demo-host)
file(COPY ${ES_WORK}/hello-build/plugins/guide.hello DESTINATION ${app}/plugins)

get_filename_component(host_name ${ES_HOST} NAME)
# With the timeline's two views: the profile table ends the output, the trace is a file.
es_run(${app}/${host_name} --profile --trace ${app}/startup.json)
if(NOT es_run_output MATCHES "\nguide\\.hello +1\\.0\\.0 +Active ")
    message(FATAL_ERROR "guide.hello is not active in the host's report:\n${es_run_output}")
endif()
file(READ ${app}/demo-host.log log)
if(NOT log MATCHES "guide.hello found a greeter from \"demo.core\"")
    message(FATAL_ERROR "guide.hello did not find the greeter:\n${log}")
endif()
if(NOT es_run_output MATCHES "\nplug-in +load +metadata +queue +activator start +activator stop +ext\\. file +total\n"
        OR NOT es_run_output MATCHES "\nguide\\.hello +[0-9]+\\.[0-9][0-9]( +[0-9]+\\.[0-9][0-9])+\n")
    message(FATAL_ERROR "no profile row for guide.hello:\n${es_run_output}")
endif()
file(READ ${app}/startup.json trace)
if(NOT trace MATCHES "\"traceEvents\"" OR NOT trace MATCHES "\"name\": \"activator start guide\\.hello\"")
    message(FATAL_ERROR "the trace has no start of guide.hello:\n${trace}")
endif()
message(STATUS "${es_run_output}")
