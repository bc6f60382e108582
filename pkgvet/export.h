// Marks what libpkgvet exports; everything else is hidden.
#pragma once

#define PKGVET_EXPORT __attribute__((visibility("default")))
