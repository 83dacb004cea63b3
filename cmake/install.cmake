# What "cmake --install" puts where. Two components: "command", what users run, and "library", what
# other CMake projects build against with find_package(Tessary).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS tessary RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT command)

install(TARGETS tessary_core EXPORT TessaryTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tessary COMPONENT library)
set(TESSARY_CMAKE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/Tessary)
install(EXPORT TessaryTargets NAMESPACE Tessary:: DESTINATION ${TESSARY_CMAKE_FOLDER} COMPONENT library)
configure_package_config_file(cmake/TessaryConfig.cmake.in ${CMAKE_BINARY_DIR}/TessaryConfig.cmake
  INSTALL_DESTINATION ${TESSARY_CMAKE_FOLDER} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/TessaryConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/TessaryConfig.cmake ${CMAKE_BINARY_DIR}/TessaryConfigVersion.cmake
        DESTINATION ${TESSARY_CMAKE_FOLDER} COMPONENT library)

if(NOT WIN32)
  set(TESSARY_DOC_FOLDER ${CMAKE_INSTALL_DATAROOTDIR}/doc/tessary)
  configure_file(packaging/man/tessary.1.in man/tessary.1 @ONLY)
  configure_file(packaging/man/tessary.de.1.in man/de/tessary.1 @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/man/tessary.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT command)
  install(FILES ${CMAKE_BINARY_DIR}/man/de/tessary.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/de/man1
          COMPONENT command)
  install(FILES packaging/completions/tessary.bash RENAME tessary
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions COMPONENT command)
  install(FILES packaging/completions/_tessary
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zsh/vendor-completions COMPONENT command)
  install(FILES packaging/completions/tessary.fish
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/fish/vendor_completions.d COMPONENT command)
  # Side by side as in the sources, since they link each other.
  install(DIRECTORY docs/ DESTINATION ${TESSARY_DOC_FOLDER}/docs COMPONENT command)
  install(DIRECTORY samples DESTINATION ${TESSARY_DOC_FOLDER} COMPONENT command)
endif()
