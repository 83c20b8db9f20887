#pragma once
// The tag record: one named value bound to a channel of the module or to nothing.
#include <cstdint>
#include <string>

#include "core/one_based.h"

namespace kova {

enum TagKind : std::int16_t { kAnalog = 0, kDigital = 1 };
enum TagDirection : std::int16_t { kInput = 0, kOutput = 1, kVariable = 2 };

struct Tag {
    std::string Label;
    std::string TagName;  // trimmed, upper case; "" = unused
    std::string IOName;   // "AI-3", "DO-1", "Analog Variable", ...
    std::int16_t Kind = kAnalog;
    std::int16_t Direction = kInput;
    std::int16_t Address = 0;
    std::int16_t IONumber = 0;
    std::int16_t RawValue1 = 0;
    float EngValue1 = 0;
    std::int16_t RawValue2 = 0;
    float EngValue2 = 0;
    std::string EngText1;
    std::string EngText2;
    float Slope = 0;
    float Offset = 0;
    std::string Units;
    std::int16_t Log = 0;
    float Value = 0;
    bool operator==(const Tag&) const = default;
};

inline constexpr int kUserTags = 32;   // tags 1..32 belong to the user
inline constexpr int kTableTags = 42;  // 33..38 system variables, 39..42 unused

using TagTable = Table<Tag, kTableTags>;

}  // namespace kova
