# The Debian package. The environment says where the folder is that holds its files, and the version.
set(CPACK_GENERATOR DEB)
set(CPACK_INSTALLED_DIRECTORIES "$ENV{TESSARY_STAGE};/")
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_NAME tessary)
set(CPACK_PACKAGE_VERSION $ENV{TESSARY_VERSION})
set(CPACK_PACKAGE_CONTACT "Tessary <tessary@example.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "bring customized List & Label reports to a new version")
set(CPACK_PACKAGE_DESCRIPTION "Compares two versions of a vendor's reports and applies what
differs to the customers' adapted copies. With man pages, completions
for bash, zsh and fish, the guide in German, and samples.")
set(CPACK_PACKAGE_FILE_NAME tessary)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
