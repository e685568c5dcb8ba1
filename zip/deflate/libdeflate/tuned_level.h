/* A compressor of libdeflate at a level of our own; everything else is as libdeflate.h says. */
#pragma once

#include <libdeflate.h>

#ifdef __cplusplus
extern "C" {
#endif

/* NULL when memory is short. Freed by libdeflate_free_compressor. */
struct libdeflate_compressor* vantrel_alloc_tuned_compressor(void);

/*
 * As libdeflate_deflate_compress, with such a compressor; but matches may begin in the `history`
 * bytes before `in`, at most 32,768, which whoever decompresses must have as well.
 */
size_t vantrel_compress_after(struct libdeflate_compressor* compressor, size_t history,
                              const void* in, size_t size, void* out, size_t room);

#ifdef __cplusplus
}
#endif
