# run(COMMAND...): runs a command from a check script (cmake -P) and stops the check, with the
# command and what it printed, when it fails. Its output (stdout and stderr together) is left in
# last_output for the caller to inspect.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()
