// A temporary directory that was made beforehand.
#pragma once

#include <sys/stat.h>

#include <string>

namespace pkgvet::cli {

// From now on mkdtemp gives directory, for any template of the same size, in this process, which
// makes one temporary directory at the most. So whoever made it knows it and can remove it, however
// this process ends, and this process need not be able to make others.
//
// The program has a mkdtemp of its own for this: the library calls it in place of the C library's,
// for whose template there is no other way to say where the payload goes.
void prepareDirectory(const std::string& directory);

// A new directory by such a template, whose name holds no dot but that of the template. Empty, with
// errno, when there is none to be had.
std::string makeDirectory(const std::string& pathTemplate, mode_t mode = S_IRWXU);

// A name that makeDirectory might choose. Empty, with errno, when there is none to be had.
std::string chooseName(const std::string& pathTemplate);

}  // namespace pkgvet::cli
