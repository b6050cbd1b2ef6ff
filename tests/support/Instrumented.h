#pragma once

// Builds under AddressSanitizer or ThreadSanitizer run many times slower: a bound that
// tells a hang from work grows with them.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int instrumentedSlowdown = 10;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr int instrumentedSlowdown = 10;
#else
constexpr int instrumentedSlowdown = 1;
#endif
#else
constexpr int instrumentedSlowdown = 1;
#endif
