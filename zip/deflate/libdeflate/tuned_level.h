/* A compressor of libdeflate at a level of our own; everything else is as libdeflate.h says. */
#pragma once

#include <libdeflate.h>

#ifdef __cplusplus
extern "C" {
#endif

/* NULL when memory is short. Freed by libdeflate_free_compressor. */
struct libdeflate_compressor* vantrel_alloc_tuned_compressor(void);

#ifdef __cplusplus
}
#endif
