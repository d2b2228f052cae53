# What Debian wants compressed, in what is about to be packed.
file(GLOB_RECURSE files "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*.1" "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/changelog")
foreach(file IN LISTS files)
    execute_process(COMMAND gzip -9n "${file}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
