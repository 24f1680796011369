# tamo_compile_options(TARGET): what every target of this project is compiled with.
function(tamo_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    # Assertions name their file relative to the source tree, so that messages and builds are reproducible.
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                           "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
    # GCC 12 reports overlaps in std::string concatenation that do not exist (GCC bug 105651).
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
      target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    if(TAMO_WARNINGS_AS_ERRORS)
      target_compile_options(${target} PRIVATE -Werror)
    endif()
  endif()
endfunction()

# tamo_add_library(NAME INCLUDE_DIR SOURCES...): the library Tamo::NAME with its public header directory.
function(tamo_add_library name include_dir)
  set(target Tamo${name})
  add_library(${target} ${ARGN})
  add_library(Tamo::${name} ALIAS ${target})
  tamo_compile_options(${target})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${include_dir}>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name} VERSION ${PROJECT_VERSION}
                                             SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()
