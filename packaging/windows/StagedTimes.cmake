# Run by cpack when all files are staged: all have the time of the release.
file(GLOB_RECURSE paths LIST_DIRECTORIES true "${CPACK_TEMPORARY_DIRECTORY}/*")
execute_process(COMMAND touch "--date=@$ENV{SOURCE_DATE_EPOCH}" ${paths} COMMAND_ERROR_IS_FATAL ANY)
