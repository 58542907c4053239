// Values carried from the integration points of elements to their nodes: ours; the loops that
// define the sums; BLAS, where it is installed, with one call for each element and with one for
// all; and a plain copy of as many bytes as are read and written, the limit of the memory.
//
//   --elements 1000000 --points 8 --nodes 8 --components 6 --runs 5
#include <map>
#include <random>
#include <vector>

#include "KOVSrvExtrapolation.h"
#include "bench/support/Measure.h"
#ifdef KOV_BENCH_BLAS
#include <cblas.h>
#endif

namespace {

struct Sizes {
    int elements, points, nodes, components;
};

void Ours(Sizes const& s, float const* source, float* target, float const* matrix) {
    KOVSrvExtrapolation::ExtrapolateSinglePrecision(s.points, s.nodes, s.components, s.elements,
                                                    source, target, matrix);
}
void Ours(Sizes const& s, double const* source, double* target, float const* matrix) {
    KOVSrvExtrapolation::ExtrapolateDoublePrecision(s.points, s.nodes, s.components, s.elements,
                                                    source, target, matrix);
}

template <class Value>
void PlainLoop(Sizes const& s, Value const* source, Value* target, float const* matrix) {
    for (int b = 0; b < s.elements; ++b) {
        for (int c = 0; c < s.components; ++c) {
            for (int o = 0; o < s.nodes; ++o) {
                Value sum = 0;
                for (int i = 0; i < s.points; ++i) {
                    Value const product =
                        static_cast<Value>(matrix[o * s.points + i]) * source[i * s.components + c];
                    sum += product;
                }
                target[o * s.components + c] = sum;
            }
        }
        source += s.points * s.components;
        target += s.nodes * s.components;
    }
}

#ifdef KOV_BENCH_BLAS
void Multiply(int m, int n, int k, float const* a, int lda, float const* b, int ldb, float* c) {
    cblas_sgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, m, n, k, 1, a, lda, b, ldb, 0, c, n);
}
void Multiply(int m, int n, int k, double const* a, int lda, double const* b, int ldb, double* c) {
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, m, n, k, 1, a, lda, b, ldb, 0, c, n);
}
#endif

template <class Value>
void Compare(std::string const& row, Sizes const& s, int runs) {
    auto const elements = static_cast<std::size_t>(s.elements);
    auto const sourceValues = static_cast<std::size_t>(s.points * s.components);
    auto const targetValues = static_cast<std::size_t>(s.nodes * s.components);
    bench::Array<Value> source(elements * sourceValues), target(elements * targetValues);
    bench::Array<Value> other(elements * targetValues);
    std::vector<float> matrix(static_cast<std::size_t>(s.nodes * s.points));
    std::mt19937 random(7);
    for (std::size_t k = 0; k < source.size(); ++k) {
        source[k] = static_cast<Value>(random() % 2000) / 16 - 50;
    }
    for (float& value : matrix) value = static_cast<float>(random() % 64) / 64 - 0.5F;

    std::map<std::string, std::vector<double>> seconds;
    auto const measure = [&](char const* who, auto&& work) {
        seconds[who].push_back(bench::Seconds(work));
    };
#ifdef KOV_BENCH_BLAS
    std::vector<Value> const wide(matrix.begin(), matrix.end());
    // The matrix by components, so that one product serves all elements, at the price of as many
    // products with zeros as there are components.
    std::vector<Value> spread(sourceValues * targetValues);
    for (std::size_t at = 0; at < spread.size(); ++at) {
        std::size_t const components = static_cast<std::size_t>(s.components);
        std::size_t const from = at / targetValues, to = at % targetValues;
        if (from % components != to % components) continue;
        spread[at] = wide[to / components * static_cast<std::size_t>(s.points) + from / components];
    }
#endif
    for (int run = 0; run < runs; ++run) {
        measure("plain loop", [&] { PlainLoop(s, source.data(), other.data(), matrix.data()); });
        measure("ours", [&] { Ours(s, source.data(), target.data(), matrix.data()); });
        if (std::memcmp(target.data(), other.data(), target.size() * sizeof(Value)) != 0) {
            throw std::runtime_error("extrapolation: not what the plain loop gives");
        }
        measure("plain copy", [&] {
            std::memcpy(other.data(), source.data(),
                        std::min(source.size(), other.size()) * sizeof(Value));
        });
#ifdef KOV_BENCH_BLAS
        measure("BLAS, each", [&] {
            for (std::size_t b = 0; b < elements; ++b) {
                Multiply(s.nodes, s.components, s.points, wide.data(), s.points,
                         source.data() + b * sourceValues, s.components,
                         other.data() + b * targetValues);
            }
        });
        measure("BLAS, at once", [&] {
            Multiply(s.elements, s.nodes * s.components, s.points * s.components, source.data(),
                     s.points * s.components, spread.data(), s.nodes * s.components, other.data());
        });
#endif
    }
    for (auto const& [who, times] : seconds) bench::Report(row, who, bench::Median(times));
}

void Run(bench::Options const& options) {
    Sizes const sizes{options.Int("elements", 1'000'000), options.Int("points", 8),
                      options.Int("nodes", 8), options.Int("components", 6)};
    int const runs = options.Int("runs", 5);
    Compare<float>("extrapolation.single", sizes, runs);
    Compare<double>("extrapolation.double", sizes, runs);
}

}  // namespace

int main(int argc, char** argv) {
#ifdef KOV_BENCH_BLAS
    // One core for all.
    openblas_set_num_threads(1);
#endif
    return bench::Main(argc, argv, &Run);
}
