#pragma once
// The pause the splash keeps up after showing the measured speed: the calibrated
// busy-wait run 50001 times, so it lasts about as long on every PC.
#include <cstdint>
#include <functional>

namespace kova {

inline constexpr long kSplashPauseLoops = 50001;

// Runs wait(delay) kSplashPauseLoops times; the program passes DelayLoop.
void SplashPause(std::int32_t delay, const std::function<void(std::int32_t)>& wait);

}  // namespace kova
