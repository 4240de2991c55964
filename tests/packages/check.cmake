# Makes the Debian packages of a shared-library build with CPack, unpacks them into a scratch root
# with dpkg-deb -x (nothing is installed on the machine), then builds and runs the consumer project
# against that root alone, runs ehal-dump --demo from it and imports the Python module from it.
#   -DCPACK=... -DBINARY_DIR=... -DWORK_DIR=... -DCONSUMER_SOURCE_DIR=... -DCXX_COMPILER=...
#   -DBUILD_TYPE=... -DPACKAGES=name,... -DPYTHON=... (empty without the module)
string(REPLACE "," ";" PACKAGES "${PACKAGES}")
file(REMOVE_RECURSE ${WORK_DIR})
set(root ${WORK_DIR}/root)

include(${CMAKE_CURRENT_LIST_DIR}/../support/run.cmake)

run(${CPACK} -G DEB --config ${BINARY_DIR}/CPackConfig.cmake -B ${WORK_DIR}/packages)
foreach(package IN LISTS PACKAGES)
  file(GLOB deb ${WORK_DIR}/packages/${package}_*.deb)
  if(NOT deb)
    file(GLOB made ${WORK_DIR}/packages/*.deb)
    message(FATAL_ERROR "no package ${package} among: ${made}")
  endif()
  run(dpkg-deb -f ${deb} Package Version Depends)
  message(STATUS "${last_output}")
  run(dpkg-deb -x ${deb} ${root})
  foreach(doc copyright changelog.Debian.gz)
    if(NOT EXISTS ${root}/usr/share/doc/${package}/${doc})
      message(FATAL_ERROR "${package} lacks /usr/share/doc/${package}/${doc}")
    endif()
  endforeach()
endforeach()

# The library's folder inside the root, for the loader.
file(GLOB_RECURSE libraries ${root}/usr/lib*/libehal.so.*)
list(GET libraries 0 library)
get_filename_component(libdir ${library} DIRECTORY)

run(${CMAKE_COMMAND} -S ${CONSUMER_SOURCE_DIR} -B ${WORK_DIR}/consumer -G Ninja
    -DCMAKE_PREFIX_PATH=${root}/usr -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_BUILD_TYPE=${BUILD_TYPE})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libdir} ${WORK_DIR}/consumer/consumer)
if(NOT last_output MATCHES "consumer ok")
  message(FATAL_ERROR "consumer printed: ${last_output}")
endif()

if(EXISTS ${root}/usr/bin/ehal-dump)
  run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libdir} ${root}/usr/bin/ehal-dump --demo)
  if(NOT last_output MATCHES "eHal::EPRBS")
    message(FATAL_ERROR "ehal-dump --demo printed: ${last_output}")
  endif()
endif()

if(PYTHON)
  file(GLOB_RECURSE modules ${root}/usr/lib/python3*/ehal*.so)
  list(GET modules 0 module)
  get_filename_component(module_dir ${module} DIRECTORY)
  foreach(file ehal.pyi py.typed)
    if(NOT EXISTS ${module_dir}/${file})
      message(FATAL_ERROR "${file} is not beside the module in ${module_dir}")
    endif()
  endforeach()
  # (Lines, not semicolons, separate the statements: run() passes its arguments on as a list.)
  run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libdir} PYTHONPATH=${module_dir} ${PYTHON} -c
      "import ehal\nprint(ehal.__file__)\nprint(ehal.decode('eHal::EPRBS', ehal.encode('eHal::EPRBS', {'RequestType': 3}))['RequestType'])")
  if(NOT last_output MATCHES "^${module_dir}/ehal[^\n]*\n3\n$")
    message(FATAL_ERROR "the packaged module did not import: ${last_output}")
  endif()
endif()
message(STATUS "the packages unpacked, the consumer built and ran against them")
