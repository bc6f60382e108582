// The validation profiles.
#pragma once

// A named rule set. The values index the "profiles" array of the configuration file, so they are
// part of its format.
enum class Profiles {
    Regular = 0,
    Extended = 1,
    Mdm = 2,
    Antivirus = 3,
    Auth = 4,
    Market = 5,
};
