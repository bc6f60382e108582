# Chooses where the facts of an ELF file come from: ELFIO where it is found, our own reader elsewhere.
# Sets PKGVET_ELF_SOURCE to elfio or mapped, and PKGVET_ELF_INCLUDE_DIRS.
set(PKGVET_ELF auto CACHE STRING "Source of the facts of an ELF file: auto, elfio or mapped")
set_property(CACHE PKGVET_ELF PROPERTY STRINGS auto elfio mapped)
set(PKGVET_ELFIO_INCLUDE_DIR "" CACHE PATH
    "Directory that holds elfio/elfio.hpp; empty to search the usual places")
if(NOT PKGVET_ELF MATCHES "^(auto|elfio|mapped)$")
  message(FATAL_ERROR "PKGVET_ELF is auto, elfio or mapped, not ${PKGVET_ELF}")
endif()

# Our source does not compile with earlier releases.
set(PKGVET_ELFIO_MINIMUM 3.10)

# Sets result to the directories of ELFIO's headers; to nothing if there are none, or old ones.
function(pkgvet_find_elfio result)
  set(${result} "" PARENT_SCOPE)
  if(PKGVET_ELFIO_INCLUDE_DIR)
    set(directory "${PKGVET_ELFIO_INCLUDE_DIR}")
  else()
    find_package(elfio ${PKGVET_ELFIO_MINIMUM} CONFIG QUIET)
    if(TARGET elfio::elfio)
      get_target_property(directories elfio::elfio INTERFACE_INCLUDE_DIRECTORIES)
      set(${result} "${directories}" PARENT_SCOPE)
      return()
    endif()
    find_path(directory elfio/elfio.hpp NO_CACHE)
  endif()
  set(header "${directory}/elfio/elfio_version.hpp")
  if(EXISTS "${header}")
    file(STRINGS "${header}" line REGEX "ELFIO_VERSION")
    string(REGEX MATCH "[0-9.]+" version "${line}")
    if(version VERSION_GREATER_EQUAL PKGVET_ELFIO_MINIMUM)
      set(${result} "${directory}" PARENT_SCOPE)
    endif()
  endif()
endfunction()

set(PKGVET_ELF_SOURCE mapped)
set(PKGVET_ELF_INCLUDE_DIRS "")
if(NOT PKGVET_ELF STREQUAL "mapped")
  pkgvet_find_elfio(PKGVET_ELF_INCLUDE_DIRS)
  if(PKGVET_ELF_INCLUDE_DIRS)
    set(PKGVET_ELF_SOURCE elfio)
  elseif(PKGVET_ELF STREQUAL "elfio")
    message(FATAL_ERROR
      "PKGVET_ELF=elfio, but ELFIO ${PKGVET_ELFIO_MINIMUM} or later was not found")
  endif()
endif()
message(STATUS "Facts of ELF files come from: ${PKGVET_ELF_SOURCE}")
