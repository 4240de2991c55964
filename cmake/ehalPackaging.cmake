# Debian packages of the installed tree, one per install component, made by CPack's DEB generator
# (`./dev package`, or `cpack -G DEB` in a build folder):
#   libehal       the shared library (Runtime)
#   libehal-dev   headers, CMake package and pkg-config file (Development)
#   ehal-tools    ehal-dump and the generated descriptions under share/ehal (Tools)
#   python3-ehal  the Python module, its stubs and the py.typed marker (Python)
# Every package carries /usr/share/doc/<package>/copyright and changelog.Debian.gz, as Debian
# policy asks; these are installed only into the packages (EXCLUDE_FROM_ALL), never by a plain
# `cmake --install`.
set(EHAL_DEB_MAINTAINER "ehal maintainers <maintainers@users.noreply.c-seed-ec21cada.example>")
set(EHAL_DEB_RELEASE 1)
set(EHAL_DEB_VERSION ${PROJECT_VERSION}-${EHAL_DEB_RELEASE})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ehal)
# Each package states its own summary (the first line of its description); without this the
# project's description would be put before each of them.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_VENDOR "ehal maintainers")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${EHAL_DEB_MAINTAINER})
set(CPACK_PACKAGE_HOMEPAGE_URL "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${EHAL_DEB_RELEASE})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${EHAL_DEB_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# Files and folders owned by root, whoever builds.
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The library's own dependencies and those of the tools and the module come from dpkg-shlibdeps
# where it is installed; libehal.so.0 itself is found in the build folder.
find_program(EHAL_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(EHAL_DPKG_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
else()
  message(STATUS "Debian packages: dpkg-shlibdeps not found, their library dependencies are "
                 "left out (./dev deps installs dpkg-dev)")
endif()

# Each component's package: name, section, summary and description.
set(CPACK_COMPONENTS_ALL Runtime Development)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libehal)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "serialisable HAL records and message envelopes - shared library
ehal is a C++17 library of serialisable data records and message envelopes
for the hardware-abstraction layer of a network test port. Its archives
are byte-compatible with every older layout of a record.

This package holds the shared library.")
# The shlibs file tells dpkg-shlibdeps of packages built against the library which package
# provides libehal.so.0; the trigger runs ldconfig once after installation.
file(WRITE ${PROJECT_BINARY_DIR}/debian/libehal/shlibs
     "libehal ${PROJECT_VERSION_MAJOR} libehal (>= ${PROJECT_VERSION})\n")
file(WRITE ${PROJECT_BINARY_DIR}/debian/libehal/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${PROJECT_BINARY_DIR}/debian/libehal/shlibs ${PROJECT_BINARY_DIR}/debian/libehal/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libehal-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libehal (= ${EHAL_DEB_VERSION}), libboost-dev, libexpat1-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "serialisable HAL records and message envelopes - development files
ehal is a C++17 library of serialisable data records and message envelopes
for the hardware-abstraction layer of a network test port.

This package holds the headers, the CMake package (find_package(ehal)) and
the pkg-config file.")

if(TARGET ehal-dump)
  list(APPEND CPACK_COMPONENTS_ALL Tools)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ehal-tools)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libehal (= ${EHAL_DEB_VERSION})")
  set(CPACK_COMPONENT_TOOLS_DESCRIPTION
      "serialisable HAL records and message envelopes - decoder and descriptions
ehal is a C++17 library of serialisable data records and message envelopes
for the hardware-abstraction layer of a network test port.

This package holds ehal-dump, which decodes captured archive bytes into
records, and the descriptions generated from the record registry: the
schema document, a Wireshark dissector and a Kaitai Struct description.")
endif()

if(TARGET ehal_python)
  list(APPEND CPACK_COMPONENTS_ALL Python)
  find_package(Python3 COMPONENTS Interpreter QUIET)
  math(EXPR next_minor "${Python3_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-ehal)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
      "libehal (= ${EHAL_DEB_VERSION}), python3 (>= ${Python3_VERSION_MAJOR}.${Python3_VERSION_MINOR}), python3 (<< ${Python3_VERSION_MAJOR}.${next_minor})")
  # py.typed beside a single-module distribution is not among the files lintian knows in
  # dist-packages; it is there on purpose (type checkers take the stubs beside the module).
  set(EHAL_DEB_PYTHON_OVERRIDE ${PROJECT_BINARY_DIR}/debian/python3-ehal/python3-ehal)
  file(WRITE ${EHAL_DEB_PYTHON_OVERRIDE}
       "python3-ehal: unknown-file-in-python-module-directory [usr/lib/python3/dist-packages/py.typed]\n")
  install(FILES ${EHAL_DEB_PYTHON_OVERRIDE} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides
          COMPONENT Python EXCLUDE_FROM_ALL)
  set(CPACK_COMPONENT_PYTHON_DESCRIPTION
      "serialisable HAL records and message envelopes - Python module
ehal is a C++17 library of serialisable data records and message envelopes
for the hardware-abstraction layer of a network test port.

This package holds the Python 3 module ehal, which encodes and decodes
every record class as dictionaries, with its type stubs.")
endif()

# The copyright file and the changelog, compressed as Debian wants it (gzip -9n: no name, no time
# stamp), for each package.
find_program(EHAL_GZIP gzip)
string(TIMESTAMP EHAL_DEB_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(EHAL_DEB_PACKAGE ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(doc ${CMAKE_INSTALL_DATAROOTDIR}/doc/${EHAL_DEB_PACKAGE})
  set(changelog ${PROJECT_BINARY_DIR}/debian/${EHAL_DEB_PACKAGE}/changelog.Debian)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in ${changelog} @ONLY)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright DESTINATION ${doc}
          COMPONENT ${component} EXCLUDE_FROM_ALL)
  if(EHAL_GZIP)
    execute_process(COMMAND ${EHAL_GZIP} -9n -c ${changelog} OUTPUT_FILE ${changelog}.gz)
    install(FILES ${changelog}.gz DESTINATION ${doc} COMPONENT ${component} EXCLUDE_FROM_ALL)
  endif()
endforeach()

include(CPack)
