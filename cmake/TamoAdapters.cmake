# tamo_find_adapter(NAME PACKAGE LIBRARY): the target Tamo::FastInfosetNAME, where PACKAGE with its target LIBRARY is found.
# The adapters are headers: the target only says what a program that includes them is linked with. Used by the project
# itself and, installed, by TamoFastInfosetConfig.cmake.
function(tamo_find_adapter name package library)
  find_package(${package} QUIET)
  if(TARGET ${library} AND NOT TARGET Tamo::FastInfoset${name})
    add_library(Tamo::FastInfoset${name} INTERFACE IMPORTED GLOBAL)
    target_link_libraries(Tamo::FastInfoset${name} INTERFACE Tamo::FastInfoset ${library})
  endif()
endfunction()

# tamo_find_adapters(NAMES...): of those that are named the ones that can be had.
function(tamo_find_adapters)
  if("Pugixml" IN_LIST ARGV)
    tamo_find_adapter(Pugixml pugixml pugixml::pugixml)
  endif()
  if("Libxml2" IN_LIST ARGV)
    tamo_find_adapter(Libxml2 LibXml2 LibXml2::LibXml2)
  endif()
endfunction()
