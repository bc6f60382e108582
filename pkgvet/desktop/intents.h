// The intents that an application says it handles.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/export.h"

// Judges intent specifications: a name, then possibly "/" and a subject, then possibly ":" and
// flags divided by "|", as in "OpenURI/text:gui". A name is a standard one or begins with "X-" and
// a capital; a subject is judged for its shape alone; of several flags only the last is looked at.
//
// Every element is judged, and each bad one logged as an error without a subject of its own. True
// when all were accepted, also for an empty list. Throws std::regex_error when an element of many
// megabytes exhausts the engine.
PKGVET_EXPORT bool validateIntents(const std::vector<std::string>& specifications);
