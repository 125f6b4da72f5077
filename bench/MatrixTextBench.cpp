// The text of a matrix, as events carry it.

#include "bench/Cases.h"
#include "core/utils/Matrix.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace velmoran::bench
{
namespace
{
constexpr auto TEXTS = &atNAnd4N<10000>;

std::vector<core::utils::Matrix> makeMatrices(std::int64_t count)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> any(-1.0F, 1.0F);
    std::vector<core::utils::Matrix> matrices;
    for (std::int64_t i = 0; i < count; ++i)
    {
        const Eigen::Vector3f axis(any(random), any(random), any(random));
        Eigen::Affine3f matrix(Eigen::AngleAxisf(3.0F * any(random), axis.normalized()));
        matrix.pretranslate(Eigen::Vector3f(any(random), 10.0F * any(random), 100.0F));
        matrices.emplace_back(matrix.data());
    }
    return matrices;
}

template <typename MakeText>
void makeTexts(benchmark::State& state, MakeText makeText)
{
    const std::vector<core::utils::Matrix> matrices = makeMatrices(state.range(0));
    std::string text;
    for (auto _ : state)
    {
        for (const core::utils::Matrix& matrix : matrices)
        {
            text = makeText(matrix.getMatrix());
            benchmark::DoNotOptimize(text.data());
        }
    }
    const char* next = text.c_str();
    for (int i = 0; i < 16; ++i)
    {
        char* end = nullptr;
        require(state, std::strtof(next, &end) == matrices.back()[i], "wrong text");
        next = end + 1;
    }
    countItems(state, state.range(0));
}

void textOurs(benchmark::State& state)
{
    makeTexts(state,
              [](const float* matrix) { return core::utils::Matrix(matrix).toEventDataString(); });
}
BENCHMARK(textOurs)->Name("matrix text/ours")->Apply(TEXTS);

void textSnprintf(benchmark::State& state)
{
    makeTexts(state,
              [](const float* matrix)
              {
                  char text[512];
                  std::array<double, 16> m;
                  std::copy_n(matrix, 16, m.begin());
                  std::snprintf(text, sizeof text,
                                "%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,"
                                "%.9g,%.9g,%.9g,%.9g",
                                m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8], m[9], m[10],
                                m[11], m[12], m[13], m[14], m[15]);
                  return std::string(text);
              });
}
BENCHMARK(textSnprintf)->Name("matrix text/snprintf")->Apply(TEXTS);

void textToChars(benchmark::State& state)
{
    makeTexts(state,
              [](const float* matrix)
              {
                  char text[512];
                  char* next = text;
                  for (int i = 0; i < 16; ++i)
                  {
                      next = std::to_chars(next, text + sizeof text, matrix[i]).ptr;
                      *next++ = ',';
                  }
                  return std::string(text, next - 1);
              });
}
BENCHMARK(textToChars)->Name("matrix text/limit")->Apply(TEXTS);

} // namespace
} // namespace velmoran::bench
