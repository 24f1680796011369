# A build with CMAKE_UNITY_BUILD compiles each target as one source, in a fraction of the time. These sources have names of
# their own that another one has, too, and stay alone.
set_source_files_properties(foundation/src/UUID.cpp TARGET_DIRECTORY TamoFoundation
  PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
set_source_files_properties(xml/src/DocumentType.cpp xml/src/NamespaceSupport.cpp xml/src/SAXDriver.cpp xml/src/SAXParser.cpp xml/src/XMLWriter.cpp
  TARGET_DIRECTORY TamoXML
  PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
set_source_files_properties(src/ElementWriter.cpp src/UUIDEncoding.cpp TARGET_DIRECTORY TamoFastInfoset
  PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
set_source_files_properties(tools/finf/files/FileDescriptorBuf.cpp tools/finf/files/GzipOutputBuf.cpp tools/finf/inspect/GzipCounter.cpp tools/finf/inspect/TextPrinter.cpp tools/finf/vocabulary/VocabularyDocument.cpp TARGET_DIRECTORY finf
  PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
