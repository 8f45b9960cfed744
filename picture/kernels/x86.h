#pragma once

// Defined where the x86 vector kernels exist. SSE2 is every x86 build's baseline; AVX2 is asked of
// the processor at run time.
#if defined(__x86_64__) || defined(__i386__)
#define QUILLET_X86 1
#endif
