# Run by cpack when all files are staged: the umask of the one who builds must not get into the package.
file(CHMOD_RECURSE "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr"
     DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
