/*
 * The tuned level: a libdeflate compressor whose level is defined by tuned_level.c. Everything else
 * is as in libdeflate.h. A compressor is used by one thread at a time.
 *
 * An installed libdeflate (VANTREL_SYSTEM_LIBDEFLATE) does not have this level. The library's level
 * 7 then replaces it: it takes the same time and makes archives 0.7 % larger (docs/performance.md),
 * and it uses no history.
 */
#pragma once

#include <libdeflate.h>

#ifdef VANTREL_SYSTEM_LIBDEFLATE

#define VANTREL_TUNED_LEVEL_NAME "level 7"

static inline struct libdeflate_compressor* vantrel_alloc_tuned_compressor(void) {
    return libdeflate_alloc_compressor(7);
}

static inline size_t vantrel_compress_after(struct libdeflate_compressor* compressor,
                                            size_t history, const void* in, size_t size, void* out,
                                            size_t capacity) {
    (void)history;
    return libdeflate_deflate_compress(compressor, in, size, out, capacity);
}

static inline void* vantrel_scratch(struct libdeflate_compressor* compressor, size_t size) {
    (void)compressor;
    (void)size;
    return NULL;
}

#else

#define VANTREL_TUNED_LEVEL_NAME "tuned level"

#ifdef __cplusplus
extern "C" {
#endif

/* Returns NULL when memory is short. The result is freed by libdeflate_free_compressor. */
struct libdeflate_compressor* vantrel_alloc_tuned_compressor(void);

/*
 * Like libdeflate_deflate_compress, for a compressor of the tuned level. Matches may also refer to
 * the `history` bytes before `in`, at most 32,768 (RFC 1951 section 2); the decompressor must have
 * them as its dictionary. Returns 0 when the output does not fit into `capacity` bytes.
 */
size_t vantrel_compress_after(struct libdeflate_compressor* compressor, size_t history,
                              const void* in, size_t size, void* out, size_t capacity);

/*
 * At least `size` bytes that the compressor itself uses only while it compresses. Returns NULL when
 * it has fewer.
 */
void* vantrel_scratch(struct libdeflate_compressor* compressor, size_t size);

#ifdef __cplusplus
}
#endif

#endif
