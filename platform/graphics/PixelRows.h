#pragma once
// Row loops over 32-bit pixels in the widest vectors the processor offers: 64-byte AVX-512
// or 32-byte AVX2 vectors where the processor has them (asked once, at the first call),
// 16-byte SSE2 vectors otherwise. The library is built for the baseline instruction set, so
// the wider loops are separate functions compiled for their target and chosen at run time.
// A row of a few hundred pixels is few enough vectors that the loop's own instructions
// count: the wider the vector, the fewer of them.
//
// An operation is a callable op(result, pattern, source, dest) that works alike on single
// pixels and on vectors of them; under a folded pattern row its pattern argument is the
// masks of its normal form under those pixels. It takes its operands by reference and writes its
// result into the first: a wide vector passed by value would change the calling convention between
// code built with and without AVX.

#include <cstdint>
#include <cstring>

namespace qv::pixel_rows {

typedef std::uint32_t TQuad __attribute__((vector_size(16)));
typedef std::uint32_t TOct __attribute__((vector_size(32)));
typedef std::uint32_t TSixteen __attribute__((vector_size(64)));

// The widest vectors this processor runs; decided on the first call.
enum class TVectorWidth { Sse2, Avx2, Avx512 };
inline TVectorWidth WidestVectors() {
    static const TVectorWidth widest = __builtin_cpu_supports("avx512f") ? TVectorWidth::Avx512
                                       : __builtin_cpu_supports("avx2")  ? TVectorWidth::Avx2
                                                                         : TVectorWidth::Sse2;
    return widest;
}

// A function of source and destination in its algebraic normal form
// a ^ (S & b) ^ (D & c) ^ (S & D & e), its masks being pixels or vectors of them.
template <class M> struct TFormMasks {
    M a, b, c, e;
    template <class T> void operator()(T& result, const T& s, const T& d) const {
        result = a ^ (s & b) ^ (d & c) ^ (s & d & e);
    }
};

// A pattern of one pixel everywhere, or the pattern pixels under the row.
struct TSolidPattern {
    std::uint32_t pixel;
};
struct TPatternRow {
    const std::uint32_t* pixels;
};
// The pattern under the row folded into an operation's normal form: the form's masks under
// each pixel, repeating every kFoldedPeriod pixels, each array valid for kFoldedLength pixels
// from the row's first on. An operation then takes the masks in place of the pattern.
inline constexpr int kFoldedPeriod = 8;
inline constexpr int kFoldedLength = 16;
struct TFoldedRow {
    const std::uint32_t *a, *b, *c, *e;
};

// The pattern under vectors of type V: a solid pattern's vector is made once.
template <class V, class Pattern> struct TPatternVectors;
template <class V> struct TPatternVectors<V, TSolidPattern> {
    using TValue = V;
    explicit TPatternVectors(const TSolidPattern& p) : vector(V{} + p.pixel), pixel(p.pixel) {}
    void Load(V& v, int) const { v = vector; }
    std::uint32_t At(int) const { return pixel; }
    V vector;
    std::uint32_t pixel;
};
template <class V> struct TPatternVectors<V, TPatternRow> {
    using TValue = V;
    explicit TPatternVectors(const TPatternRow& p) : pixels(p.pixels) {}
    void Load(V& v, int i) const { std::memcpy(&v, pixels + i, sizeof v); }
    std::uint32_t At(int i) const { return pixels[i]; }
    const std::uint32_t* pixels;
};
// A folded row's masks are made into vectors once. A vector of at least the period holds
// whole periods and is the same at every step; narrower vectors take turns.
template <class V> struct TPatternVectors<V, TFoldedRow> {
    using TValue = TFormMasks<V>;
    static constexpr int lanes = sizeof(V) / sizeof(std::uint32_t);
    static constexpr int turns = lanes >= kFoldedPeriod ? 1 : kFoldedPeriod / lanes;
    static_assert(lanes <= kFoldedLength &&
                  (lanes % kFoldedPeriod == 0 || kFoldedPeriod % lanes == 0));

    explicit TPatternVectors(const TFoldedRow& row) : row(row) {
        for (int k = 0; k < turns; ++k) {
            std::memcpy(&vectors[k].a, row.a + k * lanes, sizeof(V));
            std::memcpy(&vectors[k].b, row.b + k * lanes, sizeof(V));
            std::memcpy(&vectors[k].c, row.c + k * lanes, sizeof(V));
            std::memcpy(&vectors[k].e, row.e + k * lanes, sizeof(V));
        }
    }
    void Load(TValue& v, int i) const { v = vectors[(i / lanes) % turns]; }
    TFormMasks<std::uint32_t> At(int i) const {
        const int k = i % kFoldedPeriod;
        return {row.a[k], row.b[k], row.c[k], row.e[k]};
    }
    TValue vectors[turns];
    TFoldedRow row;
};

// dst[i] = op(pattern[i], src[i], dst[i]) & kept, in vectors of type V.
template <class V, std::uint32_t kept, class Pattern, class Op>
[[gnu::always_inline]] inline void MixRowIn(std::uint32_t* dst, const std::uint32_t* src,
                                            const Pattern& pattern, int count, const Op& op) {
    constexpr int lanes = sizeof(V) / sizeof(std::uint32_t);
    const V keptBits = V{} + kept;
    // Local copies, which the stores through dst cannot change: the pattern's vector and the
    // operation's own constants are then made once, outside the loop.
    const TPatternVectors<V, Pattern> under(pattern);
    const Op mix = op;
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        typename TPatternVectors<V, Pattern>::TValue p;
        V s, d, result;
        under.Load(p, i);
        std::memcpy(&s, src + i, sizeof s);
        std::memcpy(&d, dst + i, sizeof d);
        mix(result, p, s, d);
        result &= keptBits;
        std::memcpy(dst + i, &result, sizeof result);
    }
    for (; i < count; ++i) {
        std::uint32_t result;
        mix(result, under.At(i), src[i], dst[i]);
        dst[i] = result & kept;
    }
}

template <std::uint32_t kept, class Pattern, class Op>
[[gnu::target("avx512f")]] void MixRowAvx512(std::uint32_t* dst, const std::uint32_t* src,
                                             const Pattern& pattern, int count, const Op& op) {
    MixRowIn<TSixteen, kept>(dst, src, pattern, count, op);
}

template <std::uint32_t kept, class Pattern, class Op>
[[gnu::target("avx2")]] void MixRowAvx2(std::uint32_t* dst, const std::uint32_t* src,
                                        const Pattern& pattern, int count, const Op& op) {
    MixRowIn<TOct, kept>(dst, src, pattern, count, op);
}

template <std::uint32_t kept, class Pattern, class Op>
void MixRowSse2(std::uint32_t* dst, const std::uint32_t* src, const Pattern& pattern, int count,
                const Op& op) {
    MixRowIn<TQuad, kept>(dst, src, pattern, count, op);
}

// dst[i] = op(pattern[i], src[i], dst[i]) & kept for i in [0, count): by default without the
// unused top byte, as every raster operation writes its pixels.
// Rows shorter than one wide vector (a one-pixel frame line, a focus rectangle's side) stay
// in SSE2 registers: they gain nothing from the wide ones, whose use can lower some
// processors' clock for a while.
template <std::uint32_t kept = 0x00FFFFFFu, class Pattern, class Op>
void MixRow(std::uint32_t* dst, const std::uint32_t* src, const Pattern& pattern, int count,
            const Op& op) {
    constexpr int wideVectorPixels = sizeof(TSixteen) / sizeof(std::uint32_t);
    if (count < wideVectorPixels) return MixRowSse2<kept>(dst, src, pattern, count, op);
    switch (WidestVectors()) {
    case TVectorWidth::Avx512:
        return MixRowAvx512<kept>(dst, src, pattern, count, op);
    case TVectorWidth::Avx2:
        return MixRowAvx2<kept>(dst, src, pattern, count, op);
    case TVectorWidth::Sse2:
        return MixRowSse2<kept>(dst, src, pattern, count, op);
    }
}

} // namespace qv::pixel_rows
