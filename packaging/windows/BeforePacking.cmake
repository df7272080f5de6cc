# Run by cpack when all files are staged, once for each kind of package.

# The picture at the left of the installer's first and last page, in twice the size that 100 % screens show.
if(CPACK_GENERATOR STREQUAL "NSIS")
  execute_process(
    COMMAND sh -e -c "ppmmake '#E8EFFC' 328 628 >panel.ppm
                      rsvg-convert --width 200 '${CPACK_X9_LOGO}' | pngtopam -mix -background=#E8EFFC |
                        pamcomp -align=center -yoff=90 - panel.ppm | ppmtobmp -bpp=24 -quiet >'${CPACK_X9_PANEL}'
                      rm panel.ppm"
    WORKING_DIRECTORY "${CPACK_TOPLEVEL_DIRECTORY}" COMMAND_ERROR_IS_FATAL ANY)
endif()

if(CPACK_X9_SIGN)
  file(GLOB_RECURSE binaries "${CPACK_TEMPORARY_DIRECTORY}/*.exe" "${CPACK_TEMPORARY_DIRECTORY}/*.dll")
  execute_process(COMMAND "${CPACK_X9_SIGN}" ${binaries} COMMAND_ERROR_IS_FATAL ANY)
endif()

# All files have the time of the release.
file(GLOB_RECURSE paths LIST_DIRECTORIES true "${CPACK_TEMPORARY_DIRECTORY}/*")
if(CPACK_GENERATOR STREQUAL "NSIS")
  list(APPEND paths "${CPACK_X9_PANEL}")
endif()
execute_process(COMMAND touch "--date=@$ENV{SOURCE_DATE_EPOCH}" ${paths} COMMAND_ERROR_IS_FATAL ANY)
