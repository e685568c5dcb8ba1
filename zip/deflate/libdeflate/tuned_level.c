/*
 * libdeflate's compressor with one more level, the tuned level. scripts/build-libdeflate compiles
 * this file in place of the library's deflate_compress.c, which it includes: the level is made of
 * the library's own parts (hash chains, Huffman codes, block writer), which are private to that
 * file.
 *
 * Purpose: archives smaller than those of `zip -9` and about as small as those of `7zz -mx=5`, in
 * the time of the library's lazy levels. The library has nothing between: its level 10 makes data
 * 1.4 % smaller than this level and takes five times the time (docs/performance.md).
 *
 * Three known methods are combined, for each window of 1 MiB:
 *
 * Lazy parsing (lazy_parser.inc) over hash chains (match_search.inc), as in the library's levels 8
 * and 9. Difference: the parser's choices are not final. All matches that it finds on its way are
 * recorded as candidates, and some positions inside chosen matches are searched as well.
 *
 * Block splitting by cost (block_split.inc): neighbouring blocks are merged, bottom-up, as long as
 * that reduces their estimated size. Difference: the library decides once, on the way, where the
 * statistics of the symbols seem to change. This gains 0.22 % for 1 % of the time.
 *
 * A shortest path through the candidates by estimated cost (cheapest_path.inc), one pass for each
 * block, as the library's levels 10 to 12 do in several passes over the matches of every position.
 * Difference: only the candidates are edges, each with two lengths. With the searches inside
 * matches this gains another 0.42 %.
 *
 * In all, 0.64 % smaller than a lazy parser with 50 links for 13 % more time. What was tried and is
 * not in: units of 2 KB for the block boundaries (-0.06 %, +6 % time), every length of each match
 * (-0.02 %, +8 %), a second pass (-0.01 %), a search at every position with all of these (-1.3 %,
 * seven times the time).
 *
 * Inputs of up to 2 KB are compressed by a variant of their own (small_input.inc). The costs that
 * all parts use are in symbol_costs.inc, the data structures in tuned_state.inc.
 *
 * The output depends on the input and its history alone, not on earlier inputs, and fits into what
 * libdeflate_deflate_compress_bound states (tests/zip/tuned_level_test.cpp, compress_fuzz).
 */
#include "deflate_compress.c"

#include "zip/deflate/libdeflate/block_split.inc"
#include "zip/deflate/libdeflate/cheapest_path.inc"
#include "zip/deflate/libdeflate/lazy_parser.inc"
#include "zip/deflate/libdeflate/small_input.inc"
#include "zip/deflate/libdeflate/tuned_level.h"

/*
 * The shortest match worth searching for, by the library's rule: the fewer different literals there
 * were recently, the longer. The counts of earlier units are weighted with 7/8 per unit.
 */
static u32 shortest_match(struct tuned_state* t, const struct deflate_freqs* last) {
    u32 i;

    for (i = 0; i < DEFLATE_NUM_LITERALS; i++) {
        t->recent.litlen[i] = t->recent.litlen[i] * 7 / 8 + 8 * last->litlen[i];
    }
    return recalculate_min_match_len(&t->recent, SEARCH_DEPTH);
}

static bool has_capacity(const struct tuned_state* t, const struct search* s, u32 units) {
    return units < WINDOW_UNITS && s->found + UNIT_CANDIDATES <= t->candidates + CANDIDATES;
}

/* Parses the units of the window that begins at `in` into candidates. Returns their number. */
static u32 parse_window(struct tuned_state* t, struct search* s, const u8* in) {
    u32 units = 0;

    s->found = t->candidates;
    while (in != s->in_end && has_capacity(t, s, units)) {
        struct deflate_freqs* const freqs = &t->spans[units].freqs;
        const u8* const end = in + MIN(s->in_end - in, UNIT_LENGTH);
        const u8* const begin = in;

        memset(freqs, 0, sizeof(*freqs));
        in = parse_unit(s, in, end, t->shortest, freqs);
        t->shortest = shortest_match(t, freqs);
        t->units[units].length = (u32)(in - begin);
        t->units[units].candidates_end = (u32)(s->found - t->candidates);
        units++;
    }
    return units;
}

/*
 * Writes `span` as one block. `unit` is its first unit, which begins at `in`.
 */
static void write_span(struct libdeflate_compressor* c, struct deflate_output_bitstream* os,
                       const u8* in, const struct span* span, const struct unit* unit,
                       bool is_final) {
    struct tuned_state* const t = state_of(c);
    const struct unit* const units_end = unit + span->units;
    struct candidate* begin = t->candidates;
    struct deflate_sequence* sequence = t->sequences;
    const u8* next = in;

    if (unit != t->units) begin += unit[-1].candidates_end;
    set_costs(t, &span->freqs);
    deflate_begin_sequences(c, sequence);
    for (; unit != units_end; unit++) {
        struct candidate* const end = t->candidates + unit->candidates_end;

        mark_cheapest(t, next, unit->length, begin, end);
        sequence = take_marked(c, next, unit->length, begin, end, sequence);
        next += unit->length;
        begin = end;
    }
    deflate_flush_block(c, os, in, span->length, t->sequences, is_final);
}

/* Writes the blocks of the window that begins at `in`. Returns the window's end. */
static const u8* write_window(struct libdeflate_compressor* c, struct deflate_output_bitstream* os,
                              const u8* in, const u8* in_end) {
    struct tuned_state* const t = state_of(c);
    const struct unit* unit = t->units;
    u32 i = 0;

    do {
        const struct span* const span = &t->spans[i];
        const bool is_final = (size_t)(in_end - in) == span->length;

        write_span(c, os, in, span, unit, is_final);
        in += span->length;
        unit += span->units;
        i = span->next;
    } while (i != 0);
    return in;
}

static void compress(struct libdeflate_compressor* restrict c, const u8* in, size_t size,
                     struct deflate_output_bitstream* os) {
    struct tuned_state* const t = state_of(c);
    const u8* const history = in - t->history;
    struct search search = {&t->matches, history, {0, 0}, in, in + size, t->candidates};

    if (size <= MAX_SMALL_LENGTH && t->history == 0) {
        compress_small(c, in, (u32)size, os);
        return;
    }
    hc_matchfinder_init(&t->matches);
    if (t->history != 0) skip(&search, history, t->history);
    memset(&t->recent, 0, sizeof(t->recent));
    t->shortest = calculate_min_match_len(in, size, SEARCH_DEPTH);
    do {
        split_blocks(t, parse_window(t, &search, in));
        in = write_window(c, os, in, search.in_end);
    } while (in != search.in_end);
}

struct libdeflate_compressor* vantrel_alloc_tuned_compressor(void) {
    const size_t size = offsetof(struct libdeflate_compressor, p) + sizeof(struct tuned_state);
    struct libdeflate_compressor* const c =
        libdeflate_aligned_malloc(MATCHFINDER_MEM_ALIGNMENT, size);

    if (c == NULL) return NULL;
    c->compression_level = 7; /* the level that it replaces, and its limit for stored data */
    c->max_passthrough_size = 27;
    c->impl = compress;
    deflate_init_static_codes(c);
    init_logs(state_of(c));
    state_of(c)->history = 0;
    return c;
}

size_t vantrel_compress_after(struct libdeflate_compressor* c, size_t history, const void* in,
                              size_t size, void* out, size_t capacity) {
    size_t packed;

    state_of(c)->history = (u32)history;
    packed = libdeflate_deflate_compress(c, in, size, out, capacity);
    state_of(c)->history = 0;
    return packed;
}

void* vantrel_scratch(struct libdeflate_compressor* c, size_t size) {
    return size <= sizeof(state_of(c)->candidates) ? state_of(c)->candidates : NULL;
}
