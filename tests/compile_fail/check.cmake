# Compiles layout_names.cpp in each case and checks that only the correct one compiles, and that
# each failure names what is wrong.
function(compile case expect_success expect_message)
  execute_process(
    COMMAND ${CXX} -std=c++17 -fsyntax-only -DLAYOUT_CASE=${case} -I${SOURCE_DIR}/common/include
            -I${SOURCE_DIR}/common/ehal -I${SOURCE_DIR}/platform/include
            ${SOURCE_DIR}/tests/compile_fail/layout_names.cpp
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(expect_success AND NOT status EQUAL 0)
    message(FATAL_ERROR "case ${case} should compile:\n${output}")
  endif()
  if(NOT expect_success AND status EQUAL 0)
    message(FATAL_ERROR "case ${case} should not compile")
  endif()
  if(NOT expect_success AND NOT output MATCHES "${expect_message}")
    message(FATAL_ERROR "case ${case} fails without naming ${expect_message}:\n${output}")
  endif()
endfunction()

compile(0 TRUE "")
compile(1 FALSE "LayoutNamesAFieldNotInTheSchema")
compile(2 FALSE "ListedLayoutIsOutOfSchemaOrder")
