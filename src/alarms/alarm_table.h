#pragma once
// The alarm table and the alarm history.
#include <cstdint>
#include <string>

#include "core/one_based.h"

namespace kova {

struct AlarmDef {
    std::string TagName;
    std::int16_t TagNo = 0;  // 0 = alarm not used
    float HiVal = 0;
    std::string HiMsg;
    float LoVal = 0;
    std::string LoMsg;
    std::string NormMsg;
    std::string LastText;
    std::int16_t State = 0;  // 0 quiet, 1 high, 2 low, 3 acknowledged, 4 back to normal
    bool operator==(const AlarmDef&) const = default;
};

inline constexpr int kAlarmCount = 20;

struct AlarmState {
    Table<AlarmDef, kAlarmCount> Alarms;
    Table<std::string, 51, 0> History;  // slots 0..50
    std::int16_t HistoryCount = 0;
};

}  // namespace kova
