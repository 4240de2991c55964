# Installs the built library into a scratch prefix, then configures, builds and runs a consumer
# project that finds it with find_package(ehal CONFIG REQUIRED), and compiles the same program
# with the flags of the installed pkg-config file.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

include(${CMAKE_CURRENT_LIST_DIR}/../support/run.cmake)

run(${CMAKE_COMMAND} --install ${EHAL_BINARY_DIR} --prefix ${prefix})
run(${CMAKE_COMMAND} -S ${CONSUMER_SOURCE_DIR} -B ${WORK_DIR}/build -G Ninja
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
    -DCMAKE_BUILD_TYPE=${BUILD_TYPE} "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
    "-DCMAKE_EXE_LINKER_FLAGS=${CXX_FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
if(NOT last_output MATCHES "consumer ok")
  message(FATAL_ERROR "consumer printed: ${last_output}")
endif()

find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  file(GLOB pc_dirs ${prefix}/lib*/pkgconfig)
  set(ENV{PKG_CONFIG_PATH} "${pc_dirs}")
  run(${PKG_CONFIG} --cflags --libs --static ehal)
  string(STRIP "${last_output}" flags)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  # Sanitizer builds need the same runtime at link time.
  separate_arguments(extra UNIX_COMMAND "${CXX_FLAGS}")
  run(${CXX_COMPILER} -std=c++17 ${extra} ${CONSUMER_SOURCE_DIR}/main.cpp ${flags}
      -o ${WORK_DIR}/consumer-pc)
  # A shared library is found through the loader path, as pkg-config users deploy it.
  file(GLOB lib_dirs ${prefix}/lib*)
  run(${CMAKE_COMMAND} -E env "LD_LIBRARY_PATH=${lib_dirs}" ${WORK_DIR}/consumer-pc)
endif()
message(STATUS "consumer project built and ran against the installed package")
