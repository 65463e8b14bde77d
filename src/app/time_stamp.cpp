#include "app/time_stamp.h"

namespace korv {

double to_seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1000000.0;
}

double time_stamp() {
    timeval now{};
    gettimeofday(&now, nullptr);
    return to_seconds(now);
}

}  // namespace korv
