# SPDX-License-Identifier: BSD-3-Clause
# es_run(<command> [args...]): runs a command from a CTest script, fails the test
# with its output when it fails, and leaves its standard output in es_run_output.
function(es_run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "failed (${rc}): ${ARGN}\n${out}\n${err}")
    endif()
    set(es_run_output "${out}" PARENT_SCOPE)
endfunction()
