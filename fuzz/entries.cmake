# The fuzz targets' entry functions and the token mutations, as a library that the fuzz targets
# and the test program (the corpus replay, the tokens' tests) both link; included by each.
if(NOT TARGET ehal_fuzz_entries)
  add_library(ehal_fuzz_entries STATIC ${CMAKE_CURRENT_LIST_DIR}/fuzz_entries.cpp
                                       ${CMAKE_CURRENT_LIST_DIR}/archive_tokens.cpp)
  target_include_directories(ehal_fuzz_entries PUBLIC ${CMAKE_CURRENT_LIST_DIR})
  target_link_libraries(ehal_fuzz_entries PUBLIC ehal::ehal)
  target_compile_options(ehal_fuzz_entries PRIVATE ${EHAL_WARNINGS})
endif()
