# Installation: libraries, headers, the exported CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS TamoFoundation TamoXML TamoFastInfoset EXPORT TamoFastInfosetTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY foundation/include/ xml/include/ include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h")
install(EXPORT TamoFastInfosetTargets NAMESPACE Tamo::
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/TamoFastInfoset)

configure_package_config_file(cmake/TamoFastInfosetConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TamoFastInfosetConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/TamoFastInfoset)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TamoFastInfosetConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
configure_file(cmake/tamo-fastinfoset.pc.in ${PROJECT_BINARY_DIR}/tamo-fastinfoset.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/TamoFastInfosetConfig.cmake
              ${PROJECT_BINARY_DIR}/TamoFastInfosetConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/TamoFastInfoset)
install(FILES ${PROJECT_BINARY_DIR}/tamo-fastinfoset.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(TAMO_BUILD_TOOLS)
  install(TARGETS finf RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES packaging/finf.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES packaging/finf.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME finf)
  install(FILES packaging/finf.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
  install(FILES packaging/finf.magic DESTINATION ${CMAKE_INSTALL_DATADIR}/finf)
endif()
