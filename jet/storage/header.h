#pragma once

#include "jet/storage/bytes.h"
#include "jet/value.h"

#include <cstdint>

namespace jet {

// Page 0 of a Jet 4 file.
//
//   offset  bytes  meaning
//      000      4  signature 00 01 00 00
//      004     16  "Standard Jet DB" NUL; "Jet System DB  " in workgroup files
//      014      4  version: 0 Jet 3, 1 Jet 4, above ACE
//      018    128  obfuscated by a fixed RC4 key; offsets below are of the plain bytes
//      018      4  record pointer of the map of free pages (page 1 row 0)
//      01C      4  record pointer of a second, empty map (page 1 row 1)
//      020    4x4  definitions of MSysObjects, MSysACEs, MSysQueries, MSysRelationships
//      03C      2  code page
//      03E      4  database key, 0 = pages stand plain in the file
//      042     40  password, masked with the creation date; the bare mask means none
//      06A      4  build number of the engine that made the file
//      06E      2  collating order (LCID); 071 its version
//      072      8  creation date
//      098      8  54 06 00 00, "4.0" NUL
//      E00    512  256 commit words
struct DatabaseHeader
{
    std::uint32_t databaseKey = 0;
    std::uint16_t codePage = 1252;
    std::uint32_t buildNumber = 9756; // Jet 4 Service Pack 8
    std::uint16_t collation = 0x0409;
    DateTime created;
    bool workgroupFile = false; // .mdw
    std::uint32_t sidKey = 0;   // RC4 key of the SIDs in the catalogue; follows from the rest
};

// Takes the first page as it stands in the file; a shorter view is allowed for files below
// one page. Throws Error: NotADatabase, UnsupportedVersion, PasswordProtected, Damaged.
DatabaseHeader decodeHeader(ByteView page);

// Page 0 of a new file, ready to be written. sidKey is ignored.
Bytes encodeHeader(const DatabaseHeader& header);

} // namespace jet
