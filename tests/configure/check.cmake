# Configures the library with one of its dependencies hidden and requires the configure step to
# stop with a message that names the Debian package to install.
#   -DSOURCE_DIR=... -DWORK_DIR=... -DCXX_COMPILER=...
function(expect_refusal package hidden)
  set(build ${WORK_DIR}/without-${package})
  file(REMOVE_RECURSE ${build})
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${build} -G Ninja
            -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_DISABLE_FIND_PACKAGE_${package}=ON
            -DEHAL_BUILD_TESTS=OFF -DEHAL_BUILD_BENCH=OFF -DEHAL_BUILD_EXAMPLES=OFF
            -DEHAL_BUILD_PYTHON=OFF
    RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(result EQUAL 0)
    message(FATAL_ERROR "configuring without ${package} succeeded:\n${out}")
  endif()
  string(REGEX REPLACE "[ \n]+" " " flat "${out}")
  if(NOT flat MATCHES "CMake Error.*${hidden}")
    message(FATAL_ERROR "configuring without ${package} did not name ${hidden}:\n${out}")
  endif()
  message(STATUS "without ${package}: configure stops and names ${hidden}")
  file(REMOVE_RECURSE ${build})
endfunction()

expect_refusal(Boost "install the Debian package libboost-dev")
expect_refusal(EXPAT "install the Debian package libexpat1-dev")
