#include "Tamo/SHA256.h"
#include <algorithm>
#include <bit>

namespace Tamo {

namespace {

// The first 32 bits of the fractional parts of the cube roots of the first 64 primes.
constexpr UInt32 K[] = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

UInt32 loadBigEndian(const UInt8* p) noexcept {
    return UInt32{p[0]} << 24 | UInt32{p[1]} << 16 | UInt32{p[2]} << 8 | UInt32{p[3]};
}

template<class T>
void storeBigEndian(T value, UInt8* p) noexcept {
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        p[i] = static_cast<UInt8>(value >> (8 * (sizeof(T) - 1 - i)));
    }
}

} // namespace

void SHA256::add(std::span<const std::byte> octets) {
    const UInt8* p = reinterpret_cast<const UInt8*>(octets.data());
    std::size_t left = octets.size();
    while (left != 0) {
        const std::size_t waiting = static_cast<std::size_t>(_size % BLOCK);
        const std::size_t count = std::min(BLOCK - waiting, left);
        if (count == BLOCK) {
            hashBlock(p);
        } else {
            std::copy_n(p, count, _block.data() + waiting);
            if (waiting + count == BLOCK) {
                hashBlock(_block.data());
            }
        }
        _size += count;
        p += count;
        left -= count;
    }
}

SHA256::Digest SHA256::finish() {
    constexpr std::size_t LENGTH = 8; // octets of the length in bits at the end
    std::array<std::byte, BLOCK + LENGTH> padding{std::byte{0x80}};
    const std::size_t waiting = static_cast<std::size_t>(_size % BLOCK);
    const std::size_t size = (waiting < BLOCK - LENGTH ? BLOCK : 2 * BLOCK) - waiting;
    storeBigEndian(_size * 8, reinterpret_cast<UInt8*>(padding.data()) + size - LENGTH);
    add(std::span(padding.data(), size));
    Digest digest{};
    for (std::size_t i = 0; i < _state.size(); ++i) {
        storeBigEndian(_state[i], digest.data() + i * sizeof(UInt32));
    }
    return digest;
}

void SHA256::hashBlock(const UInt8* pBlock) noexcept {
    UInt32 w[64];
    for (std::size_t i = 0; i < 16; ++i) {
        w[i] = loadBigEndian(pBlock + 4 * i);
    }
    for (std::size_t i = 16; i < 64; ++i) {
        const UInt32 s0 = std::rotr(w[i - 15], 7) ^ std::rotr(w[i - 15], 18) ^ (w[i - 15] >> 3);
        const UInt32 s1 = std::rotr(w[i - 2], 17) ^ std::rotr(w[i - 2], 19) ^ (w[i - 2] >> 10);
        w[i] = w[i - 16] + s0 + w[i - 7] + s1;
    }
    auto [a, b, c, d, e, f, g, h] = _state;
    for (std::size_t i = 0; i < 64; ++i) {
        const UInt32 s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
        const UInt32 t1 = h + s1 + ((e & f) ^ (~e & g)) + K[i] + w[i];
        const UInt32 s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
        const UInt32 t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    const std::array<UInt32, 8> add{a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < _state.size(); ++i) {
        _state[i] += add[i];
    }
}

} // namespace Tamo
