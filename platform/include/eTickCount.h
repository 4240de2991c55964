// Default millisecond tick counter of the platform layer.
#pragma once

// Milliseconds of a monotonic clock, truncated to 32 bits: wraps after about 49.7 days, so
// differences must be taken in unsigned 32-bit arithmetic.
unsigned int EGetTickCount();
