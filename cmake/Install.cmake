# Installation: libraries, headers, the exported CMake package and the pkg-config file. The components are the packages
# of cmake/Packages.cmake: "library" to run programs, "development" to build them, "tool" for finf.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/TamoFastInfoset)
install(TARGETS TamoFoundation TamoXML TamoFastInfoset EXPORT TamoFastInfosetTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY foundation/include/ xml/include/ include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        COMPONENT development FILES_MATCHING PATTERN "*.h")
install(EXPORT TamoFastInfosetTargets NAMESPACE Tamo:: DESTINATION ${package_dir} COMPONENT development)

configure_package_config_file(cmake/TamoFastInfosetConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TamoFastInfosetConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TamoFastInfosetConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TamoFastInfosetConfig.cmake
              ${PROJECT_BINARY_DIR}/TamoFastInfosetConfigVersion.cmake
              cmake/TamoAdapters.cmake
        DESTINATION ${package_dir} COMPONENT development)

# Programs that link the static libraries link Expat as well; the shared ones bring it along.
set(TAMO_PC_REQUIRES Requires)
if(BUILD_SHARED_LIBS)
  set(TAMO_PC_REQUIRES Requires.private)
endif()
# The prefix is found from the place of the file, so that an installed tree can be moved as a whole.
file(RELATIVE_PATH TAMO_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/tamo-fastinfoset.pc.in ${PROJECT_BINARY_DIR}/tamo-fastinfoset.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tamo-fastinfoset.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

# Whoever passes the libraries on passes these on; packages have their own way, see Packages.cmake.
if(NOT TAMO_DEBIAN_PACKAGES)
  install(FILES LICENSE NOTICE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tamo-fast-infoset COMPONENT library)
endif()

if(TAMO_BUILD_TOOLS)
  install(TARGETS finf RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
  set(manual ${PROJECT_SOURCE_DIR}/packaging/finf.1)
  if(TAMO_DEBIAN_PACKAGES) # which have it compressed
    tamo_gzip(${manual} manual)
  endif()
  install(FILES ${manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  # Made by finf --completion; the tests compare.
  install(FILES packaging/finf.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME finf
          COMPONENT tool)
  install(FILES packaging/finf.zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions RENAME _finf
          COMPONENT tool)
  install(FILES packaging/finf.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tool)
  install(FILES packaging/finf.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages COMPONENT tool)
  install(FILES packaging/finf.magic DESTINATION ${CMAKE_INSTALL_DATADIR}/finf COMPONENT tool)
endif()
