# Installs the build into a scratch prefix and imports the module from the prefix's
# site-packages, with nothing of the build tree on the path.
file(REMOVE_RECURSE ${WORK_DIR})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${WORK_DIR}
                RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE out)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "install failed: ${out}")
endif()
foreach(file ehal.pyi py.typed)
  if(NOT EXISTS ${WORK_DIR}/${MODULE_DIR}/${file})
    message(FATAL_ERROR "${MODULE_DIR}/${file} not installed")
  endif()
endforeach()
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env PYTHONPATH=${WORK_DIR}/${MODULE_DIR} ${PYTHON} -c
    "import ehal; print(ehal.__file__); print(ehal.decode('eHal::EPRBS', ehal.encode('eHal::EPRBS', {'RequestType': 3}))['RequestType'])"
  WORKING_DIRECTORY ${WORK_DIR} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT result EQUAL 0 OR NOT out MATCHES "^${WORK_DIR}/${MODULE_DIR}/ehal[^\n]*\n3\n$")
  message(FATAL_ERROR "the installed module did not import: ${out}")
endif()
