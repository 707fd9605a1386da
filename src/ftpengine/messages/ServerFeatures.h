#pragma once

#include <string_view>

// What a server says that it can do beyond RFC 959 (RFC 2389, FEAT). Nothing where it says nothing.
struct ServerFeatures {
    bool utf8 = false; // names in UTF-8 (RFC 2640)
    bool mlst = false; // listings for programs, MLSD (RFC 3659)
    bool epsv = false; // passive mode without an address (RFC 2428)
    bool size = false; // the size of a file (RFC 3659)
    bool mdtm = false; // its time
    bool rest = false; // transfers that go on in the middle of a file
};

// reply: with all its lines, of which those between the first and the last begin with a blank.
ServerFeatures ParseFeatures(std::string_view reply);
