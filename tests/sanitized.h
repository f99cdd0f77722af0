// SPDX-License-Identifier: MIT
#pragma once

/** True where AddressSanitizer is built in, which takes more memory than a confined process may have. */
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
inline constexpr bool kSanitized = __has_feature(address_sanitizer);
#else
inline constexpr bool kSanitized = false;
#endif
