// Code that must not run in the process of the tests itself.
#pragma once

#include <functional>

// Runs action in a child process and tells whether it answered true; an exception or a signal is
// false. What the child changes of its process stays there.
bool holdsInChild(const std::function<bool()>& action);

// The same as an ordinary user, whom permissions bind: nobody in the root directory, when this
// process is the superuser's.
bool holdsForOrdinaryUser(const std::function<bool()>& action);
