# Run by cpack on what it has installed, before it packs it. The zsh of Debian looks elsewhere for
# the completions of packages.
if(CPACK_GENERATOR STREQUAL "DEB")
  set(zsh "${CPACK_TEMPORARY_DIRECTORY}/program/${CPACK_INSTALL_PREFIX}/share/zsh")
  file(RENAME "${zsh}/site-functions" "${zsh}/vendor-completions")
endif()
