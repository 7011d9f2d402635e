#pragma once

#include "jet/storage/bytes.h"

#include <cstdint>
#include <span>
#include <string>

namespace jet::jet3 {

// The 8-bit characters that an Access 95/97 file keeps its names and texts in.
class CodePage
{
public:
    // A Windows code page of single bytes: 874, 1250 to 1258. Throws Error (Unsupported).
    explicit CodePage(std::uint16_t number);
    std::uint16_t number() const { return m_number; }
    void appendUtf8(std::string& out, ByteView text) const;
    std::string toUtf8(ByteView text) const;

private:
    std::uint16_t m_number;
    std::span<const char16_t> m_highHalf; // characters 80 to FF
};

// Empty when the page is not known.
std::span<const char16_t> highHalf(std::uint16_t codePage);

} // namespace jet::jet3
