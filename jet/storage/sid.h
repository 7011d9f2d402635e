#pragma once

#include "jet/storage/bytes.h"
#include "jet/value.h"

#include <cstdint>

// Owners and account identifiers of the catalogue: a few plain bytes, RC4-coded with a key
// that follows from page 0 (DatabaseHeader::sidKey), from the stream's start for each value.
namespace jet::sid {

inline const Bytes kAdmin = {0x03, 0x01};   // the user everyone is without a workgroup file
inline const Bytes kUsers = {0x02, 0x01};   // the group of all users
inline const Bytes kEngine = {0x02, 0x03};  // owner of the engine's own objects
inline const Bytes kCreator = {0x02, 0x04}; // in a container's rules: whoever makes the object

// Codes and decodes alike.
Bytes coded(ByteView sid, std::uint32_t sidKey);

} // namespace jet::sid
