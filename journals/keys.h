#pragma once

#include <cstdint>
#include <type_traits>

namespace journals {

// Record keys, kept apart so that a group cannot be passed for a student.
enum class StudentId : std::int32_t {};    // SPSTUD.ID
enum class GroupId : std::int32_t {};      // SPGRUP.IDG
enum class DisciplineId : std::int32_t {}; // SPPRED.IDD

template <class Key>
requires std::is_enum_v<Key>
constexpr std::int64_t keyNumber(Key key)
{
    return static_cast<std::int64_t>(key);
}

} // namespace journals
