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
  # What is not marked with TAMO_API stays inside (Tamo/Export.h).
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name} CXX_VISIBILITY_PRESET hidden
    SOVERSION ${TAMO_SOVERSION} VERSION ${TAMO_SOVERSION}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH})
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    # Nobody replaces a function of ours at load time, so the compiler may inline across exported functions.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  endif()
endfunction()

# tamo_check_version(HEADER): the version that the header states has to be the project's.
function(tamo_check_version header)
  file(STRINGS ${header} stated REGEX "^#define TAMO_VERSION_(MAJOR|MINOR|PATCH|STRING) ")
  list(TRANSFORM stated REPLACE "^#define TAMO_VERSION_" "")
  set(expected "MAJOR ${PROJECT_VERSION_MAJOR}" "MINOR ${PROJECT_VERSION_MINOR}" "PATCH ${PROJECT_VERSION_PATCH}"
               "STRING \"${PROJECT_VERSION}\"")
  if(NOT stated STREQUAL expected)
    message(FATAL_ERROR "${header} states '${stated}', the project's version is ${PROJECT_VERSION}")
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
endfunction()

# tamo_gzip(FILE VARIABLE): compresses FILE into the binary directory and sets VARIABLE to the result.
function(tamo_gzip file variable)
  find_program(GZIP_PROGRAM gzip REQUIRED)
  cmake_path(GET file FILENAME name)
  set(result ${PROJECT_BINARY_DIR}/${name}.gz)
  execute_process(COMMAND ${GZIP_PROGRAM} -9nc ${file} OUTPUT_FILE ${result} COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} ${result} PARENT_SCOPE)
endfunction()
