// SPDX-License-Identifier: MIT
#pragma once
#include <cstddef>
#include <cstdint>

namespace holdwise {

inline constexpr char16_t kFirstInPinyinTable = 0x3400;
inline constexpr std::size_t kPinyinTableSize = 0x9FFF - 0x3400 + 1;
/// Of each character from kFirstInPinyinTable on a bit a letter, A the lowest. Written while the build is configured.
extern const std::uint32_t kPinyinTable[kPinyinTableSize];

}  // namespace holdwise
