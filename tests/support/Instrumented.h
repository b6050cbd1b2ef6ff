#pragma once

// Builds under the sanitizers (ZDS_SANITIZE, ZDS_SANITIZE_THREAD) run many times slower:
// a bound that tells a hang from work grows with them.
#ifdef ZDS_INSTRUMENTED
constexpr int instrumentedSlowdown = 10;
#else
constexpr int instrumentedSlowdown = 1;
#endif
