#pragma once

#if defined(__SSE__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 1)
#include <xmmintrin.h>
#define LUMORA_HAS_MXCSR 1
#endif

namespace Lumora {

// Sets flush-to-zero and denormals-are-zero for the scope of one packet, so a
// decaying filter or reverb tail never drops into the slow denormal range, and
// restores the caller's mode afterwards (the host's thread is not ours to change).
class DenormalGuard {
public:
    DenormalGuard() {
#ifdef LUMORA_HAS_MXCSR
        saved_ = _mm_getcsr();
        _mm_setcsr(saved_ | 0x8040u); // FTZ (bit 15) | DAZ (bit 6)
#endif
    }
    ~DenormalGuard() {
#ifdef LUMORA_HAS_MXCSR
        _mm_setcsr(saved_);
#endif
    }
    DenormalGuard(const DenormalGuard&) = delete;
    DenormalGuard& operator=(const DenormalGuard&) = delete;

private:
#ifdef LUMORA_HAS_MXCSR
    unsigned int saved_ = 0;
#endif
};

} // namespace Lumora
