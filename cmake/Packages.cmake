# Debian packages through CPack: libtamo-fastinfoset1, libtamo-fastinfoset-dev and finf, from a shared build that is
# configured with CMAKE_INSTALL_PREFIX=/usr. scripts/package does all of it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "Tamo Fast Infoset authors")
set(CPACK_PACKAGE_CONTACT "Tamo Fast Infoset authors <tamo-fast-infoset@example.org>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/foundation ${PROJECT_BINARY_DIR}/xml
    ${PROJECT_BINARY_DIR}/src)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_COMPONENTS_ALL library development tool)

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own, the first line of its description
string(CONCAT about
  "Fast Infoset (ITU-T X.891 | ISO/IEC 24824-1) is the binary form of XML:\n"
  "smaller than XML text, and read without a search for markup.\n\n")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libtamo-fastinfoset${TAMO_SOVERSION})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Fast Infoset for C++ through SAX2 - shared libraries\n${about}\
This package contains what programs need at run time.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtamo-fastinfoset-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS libexpat1-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "libpugixml-dev, libxml2-dev") # what the adapters include
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Fast Infoset for C++ through SAX2 - development files\n${about}\
This package contains headers, a CMake package and a pkg-config file.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME finf)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION text)
set(CPACK_COMPONENT_TOOL_DEPENDS library)
set(CPACK_COMPONENT_TOOL_DESCRIPTION "convert between XML text and Fast Infoset\n${about}\
This package contains the command-line tool.")

# Every package has its copyright and changelog in the place that Debian wants.
set(debian_changelog ${PROJECT_BINARY_DIR}/changelog.Debian)
file(TIMESTAMP ${PROJECT_SOURCE_DIR}/CHANGELOG.md date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${debian_changelog} "tamo-fastinfoset (${PROJECT_VERSION}-1) unstable; urgency=medium

  * See CHANGELOG.md of the sources.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
tamo_gzip(${debian_changelog} debian_changelog)
foreach(component library development tool)
  string(TOUPPER ${component} upper)
  install(FILES ${debian_changelog} ${PROJECT_SOURCE_DIR}/cmake/copyright ${PROJECT_SOURCE_DIR}/NOTICE
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME} COMPONENT ${component})
endforeach()

include(CPack)
