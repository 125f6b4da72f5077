#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace velmoran::fuzz
{
/// Turns the bytes of a fuzzer into structured data. Where they end everything is zero.
///
/// Take each value into a variable of its own where a call needs several: compilers differ in
/// the order of arguments, and a file must mean the same to all of them.
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size) : m_next(data), m_end(data + size) {}

    bool isEmpty() const { return m_next == m_end; }

    /// 0 to `bound` - 1.
    unsigned int below(unsigned int bound)
    {
        return (takeByte() | (bound > 256 ? takeByte() << 8 : 0U)) % bound;
    }

    bool flag() { return takeByte() % 2 == 1; }

    /// An index that is mostly near a list of `count`, and sometimes far off.
    unsigned int index(unsigned int count)
    {
        static constexpr unsigned int FAR[] = {0x7fffffffU, 0x80000000U, 0xffffffffU, 0x55555555U};
        const unsigned int value = below(256);
        return value < 4 ? FAR[value] : value % (count + 2);
    }

    /// A small number, or one of those that are seldom thought of.
    float number()
    {
        constexpr float LARGE = std::numeric_limits<float>::max();
        constexpr float INFINITE = std::numeric_limits<float>::infinity();
        static constexpr float ODD[] = {
            std::numeric_limits<float>::quiet_NaN(),  INFINITE, -INFINITE, LARGE, -LARGE,
            std::numeric_limits<float>::denorm_min(), -0.0F,    0.001F};
        const unsigned int value = below(256);
        return value < 8 ? ODD[value] : 0.25F * static_cast<float>(static_cast<int>(value) - 128);
    }

    /// A small number that is none of the odd ones.
    float plainNumber() { return 0.25F * static_cast<float>(static_cast<int>(below(256)) - 128); }

    std::vector<float> numbers(unsigned int most)
    {
        std::vector<float> result(below(most + 1));
        std::generate(result.begin(), result.end(), [this] { return number(); });
        return result;
    }

    /// An entry of a list that is not empty.
    template <typename T>
    const T& entryOf(const std::vector<T>& list)
    {
        return list[below(static_cast<unsigned int>(list.size()))];
    }

    /// One of a few names, which therefore clash.
    std::string name(const char* prefix, unsigned int variety)
    {
        return prefix + std::to_string(below(variety));
    }

private:
    unsigned int takeByte() { return m_next != m_end ? *m_next++ : 0U; }

    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};

/// Ends the program with a word when something that must hold does not.
inline void check(bool holds, const char* what)
{
    if (!holds)
    {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}
} // namespace velmoran::fuzz

/// What a fuzzer calls with its bytes; each program here has one. Always 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Called once in the beginning. Always 0.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
