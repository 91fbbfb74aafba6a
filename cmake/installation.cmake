# Where files are installed, below any prefix. The program finds its files relative to its own path, and the build
# folder has the same layout as an installation, so that neither depends on its location.
include(GNUInstallDirs)
set(CMAKE_INSTALL_DOCDIR "${CMAKE_INSTALL_DATAROOTDIR}/doc/tralio")
set(TRALIO_INSTALL_HELPERDIR "${CMAKE_INSTALL_LIBEXECDIR}/tralio")
file(RELATIVE_PATH TRALIO_HELPERS_FROM_PROGRAM "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBEXECDIR}/tralio")

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
cmake_path(ABSOLUTE_PATH TRALIO_HELPERS_FROM_PROGRAM BASE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}" NORMALIZE
  OUTPUT_VARIABLE TRALIO_BUILD_HELPERDIR)

# A program that the resident one starts, and that nobody calls by hand.
function(tralio_helper target)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${TRALIO_BUILD_HELPERDIR}")
  install(TARGETS ${target} DESTINATION "${TRALIO_INSTALL_HELPERDIR}")
endfunction()

# Removes what the last `cmake --install` of this build folder installed.
add_custom_target(uninstall
  COMMAND "${CMAKE_COMMAND}" -D "MANIFEST=${CMAKE_BINARY_DIR}/install_manifest.txt" -P "${CMAKE_CURRENT_LIST_DIR}/uninstall.cmake"
  VERBATIM)
