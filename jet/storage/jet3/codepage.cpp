#include "jet/storage/jet3/codepage.h"

#include "jet/error.h"
#include "jet/text.h"

namespace jet::jet3 {

CodePage::CodePage(std::uint16_t number)
    : m_number(number)
    , m_highHalf(highHalf(number))
{
    if (m_highHalf.empty())
        throw Error(Fault::Unsupported, "тексты файла Access 97 записаны в кодовой странице "
                                            + std::to_string(number)
                                            + ", которая не поддерживается");
}

void CodePage::appendUtf8(std::string& out, ByteView text) const
{
    for (const std::uint8_t byte : text)
        jet::appendUtf8(out, byte < 0x80 ? char32_t{byte} : char32_t{m_highHalf[byte - 0x80u]});
}

std::string CodePage::toUtf8(ByteView text) const
{
    std::string out;
    appendUtf8(out, text);
    return out;
}

} // namespace jet::jet3
