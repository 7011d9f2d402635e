#include "jet/storage/sid.h"

#include "jet/storage/rc4.h"

namespace jet::sid {

Bytes coded(ByteView sid, std::uint32_t sidKey)
{
    Bytes result(sid.begin(), sid.end());
    applyRc4(sidKey, result);
    return result;
}

} // namespace jet::sid
