#include "core/splash_pause.h"

namespace kova {

void SplashPause(std::int32_t delay, const std::function<void(std::int32_t)>& wait) {
    for (long i = 0; i < kSplashPauseLoops; ++i) wait(delay);
}

}  // namespace kova
