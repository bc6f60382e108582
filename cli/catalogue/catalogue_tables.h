// The chapters of the catalogue, each in a source of its own.
#pragma once

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

Chapter headerChapter();
Chapter desktopChapter();
Chapter sandboxChapter();
Chapter taskChapter();
Chapter qmlChapter();
Chapter binaryChapter();
Chapter pathChapter();
Chapter fileChapter();
Chapter integrityChapter();

}  // namespace pkgvet::cli
