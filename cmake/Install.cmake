# What is installed beside the program (src/host installs that), and the Debian package. The program finds schema,
# resources and samples in share/tolvane beside its own bin folder, so an installation may be moved as a whole.
include(GNUInstallDirs)

set(TOLVANE_SHARE "${CMAKE_INSTALL_DATADIR}/${PROJECT_NAME}")
install(DIRECTORY schema/ DESTINATION "${TOLVANE_SHARE}/schema" FILES_MATCHING PATTERN "*.sql")
install(DIRECTORY resources/ DESTINATION "${TOLVANE_SHARE}/resources" FILES_MATCHING PATTERN "*.json")
install(DIRECTORY samples/documents DESTINATION "${TOLVANE_SHARE}/samples")
install(FILES samples/README.md samples/demo.sql samples/older.sql samples/documents.json
  DESTINATION "${TOLVANE_SHARE}/samples")
install(PROGRAMS samples/tour.sh DESTINATION "${TOLVANE_SHARE}/samples")
install(FILES man/tolvane.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES README.md CHANGELOG.md docs/architecture.md docs/accountset.md docs/calls.md
  DESTINATION "${CMAKE_INSTALL_DOCDIR}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME "${PROJECT_NAME}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "Tolvane maintainers <maintainers@tolvane.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION database)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The tour's last step looks at the account set from outside.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS sqlite3)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
