# Packages: cpack -G DEB, cpack -G RPM. Library, development files and program are packages of their
# own, as distributions have them.
set(CPACK_PACKAGE_NAME pkgvet)
set(CPACK_PACKAGE_VENDOR "the pkgvet authors")
set(CPACK_PACKAGE_CONTACT "the pkgvet authors <pkgvet@localhost>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_RESOURCE_FILE_README "${PROJECT_SOURCE_DIR}/README.md")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

# Each package carries the licence, under the name that Debian asks for.
foreach(component IN ITEMS library:libpkgvet${PROJECT_VERSION_MAJOR} development:libpkgvet-dev
        program:pkgvet)
  string(REPLACE : ";" component ${component})
  list(GET component 0 name)
  list(GET component 1 package)
  install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" RENAME copyright COMPONENT ${name}
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}")
endforeach()

# The rule tree is installed with absolute names in it, those of where it will stand in the end.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)

set(CPACK_COMPONENTS_ALL library development program)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Judges application packages in RPM format: the library")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Judges application packages in RPM format: what programs are built with")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
    "Judges application packages in RPM format: the program and its rules")

# The library unpacks packages with rpm2cpio and cpio. What else a file links is found out from the
# file itself.
set(PKGVET_LIBRARY_PACKAGE "libpkgvet${PROJECT_VERSION_MAJOR}")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/DebianLayout.cmake")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME "${PKGVET_LIBRARY_PACKAGE}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "rpm2cpio, cpio")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libpkgvet-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${PKGVET_LIBRARY_PACKAGE} (= ${PROJECT_VERSION}), libglib2.0-dev")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME pkgvet)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${PKGVET_LIBRARY_PACKAGE} (= ${PROJECT_VERSION})")

set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_RELOCATABLE OFF)
# Directories that belong to others.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION)
foreach(directory bin include share share/bash-completion share/bash-completion/completions
        share/doc
        share/fish share/fish/vendor_completions.d share/man share/man/man1 share/man/man5
        share/zsh share/zsh/site-functions libexec "${CMAKE_INSTALL_LIBDIR}"
        "${CMAKE_INSTALL_LIBDIR}/cmake" "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
  list(APPEND CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION "/usr/${directory}")
endforeach()
set(CPACK_RPM_PACKAGE_RELEASE 1)
set(CPACK_RPM_PACKAGE_LICENSE MIT)
set(CPACK_RPM_LIBRARY_PACKAGE_NAME "${PKGVET_LIBRARY_PACKAGE}")
set(CPACK_RPM_LIBRARY_PACKAGE_REQUIRES "/usr/bin/rpm2cpio, cpio")
set(CPACK_RPM_LIBRARY_POST_INSTALL_SCRIPT_FILE "${CMAKE_CURRENT_LIST_DIR}/ldconfig.sh")
set(CPACK_RPM_LIBRARY_POST_UNINSTALL_SCRIPT_FILE "${CMAKE_CURRENT_LIST_DIR}/ldconfig.sh")
set(CPACK_RPM_DEVELOPMENT_PACKAGE_NAME libpkgvet-devel)
set(CPACK_RPM_DEVELOPMENT_PACKAGE_REQUIRES
    "${PKGVET_LIBRARY_PACKAGE} = ${PROJECT_VERSION}, pkgconfig(glib-2.0)")
set(CPACK_RPM_PROGRAM_PACKAGE_NAME pkgvet)
set(CPACK_RPM_PROGRAM_PACKAGE_REQUIRES "${PKGVET_LIBRARY_PACKAGE} = ${PROJECT_VERSION}")

include(CPack)
