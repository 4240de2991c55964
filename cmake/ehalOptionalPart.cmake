# The optional parts of the build (tests, benchmarks, fuzz targets, Python module) are left out,
# with the reason printed at configure time, when what they need is missing.
#
#   ehal_optional_part(<option> <part> [PACKAGE <package>] [IF <condition>...]
#                      [BECAUSE <text>...] [SAY_IF_OFF])
#
# When <option> is ON, finds <package> (find_package QUIET) and tests <condition> as if() does;
# when the package is not found or the condition is false, prints "<part> not built: <text>" (the
# pieces of <text> joined) and switches <option> off in the caller's scope. With SAY_IF_OFF, an
# <option> that is OFF to begin with is reported too, as "<part> not built: <option> is OFF".
function(ehal_optional_part option part)
  cmake_parse_arguments(PARSE_ARGV 2 arg "SAY_IF_OFF" "PACKAGE" "IF;BECAUSE")
  if(NOT ${option})
    if(arg_SAY_IF_OFF)
      message(STATUS "${part} not built: ${option} is OFF")
    endif()
    return()
  endif()
  set(missing FALSE)
  if(arg_PACKAGE)
    find_package(${arg_PACKAGE} QUIET)
    if(NOT ${arg_PACKAGE}_FOUND)
      set(missing TRUE)
    endif()
  endif()
  if(arg_IF AND NOT (${arg_IF}))
    set(missing TRUE)
  endif()
  if(missing)
    list(JOIN arg_BECAUSE "" reason)
    message(STATUS "${part} not built: ${reason}")
    set(${option} OFF PARENT_SCOPE)
  endif()
endfunction()
