// The public keys that a user trusts.
#pragma once

#include <string>
#include <vector>

#include "cli/base/fault.h"

namespace pkgvet::cli {

struct Keyring {
    std::vector<std::string> keys;  // each one key as OpenPGP has it, without armour
};

// The keys in directory, of which each file holds one, with ASCII armour or without. Everything
// that is wrong with it goes to faults: a directory without keys, and a file that is not a public
// key and nothing else. The result is of use only when nothing was.
Keyring readKeyring(const std::string& directory, std::vector<Fault>* faults);

// SHA-256 over the keys, whatever their files are called; empty without keys.
std::string digestOf(const Keyring& keyring);

}  // namespace pkgvet::cli
