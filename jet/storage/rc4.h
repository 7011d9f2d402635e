#pragma once

#include "jet/storage/bytes.h"

#include <cstdint>

namespace jet {

// XORs the bytes with the RC4 key stream of the key's four little-endian bytes, from the
// start of the stream. Encodes and decodes alike.
void applyRc4(std::uint32_t key, ByteSpan bytes);

} // namespace jet
