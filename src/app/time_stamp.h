#pragma once

#include <sys/time.h>

namespace korv {

/// The time in seconds. Double precision throughout: today's seconds in single precision step by 128.
double to_seconds(const timeval& time);

/// The wall clock now, in seconds.
double time_stamp();

}  // namespace korv
