// A block of hexahedra as test data: its size follows from the number of elements asked for.
#pragma once

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "bench/support/Measure.h"

namespace bench {

/// `edge` cubed elements. Numbered along the axes, or, if `permuted`, nodes and elements at random.
class HexMesh {
  public:
    explicit HexMesh(int elementsAtLeast, bool permuted = false) {
        m_edge = static_cast<int>(std::ceil(std::cbrt(elementsAtLeast) - 1e-9));
        if (permuted) {
            m_node = Shuffled(NumberNodes(), 1);
            m_element = Shuffled(NumberElements(), 2);
        }
    }
    int NumberNodes() const { return (m_edge + 1) * (m_edge + 1) * (m_edge + 1); }
    int NumberElements() const { return m_edge * m_edge * m_edge; }

    /// `out`: (elements, 8), node indices from 0.
    void Connectivity(int* out) const {
        int const row = m_edge + 1, layer = row * row;
        int const corner[8] = {0, 1, 1 + row, row, layer, 1 + layer, 1 + row + layer, row + layer};
        int element = 0;
        for (int z = 0; z < m_edge; ++z) {
            for (int y = 0; y < m_edge; ++y) {
                for (int x = 0; x < m_edge; ++x, ++element) {
                    int const first = (z * row + y) * row + x;
                    int* const to = out + std::ptrdiff_t{8} * At(m_element, element);
                    for (int k = 0; k < 8; ++k) to[k] = At(m_node, first + corner[k]);
                }
            }
        }
    }

  private:
    static std::vector<int> Shuffled(int n, unsigned seed) {
        std::vector<int> order(static_cast<std::size_t>(n));
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), std::mt19937(seed));
        return order;
    }
    static int At(std::vector<int> const& order, int i) {
        return order.empty() ? i : order[static_cast<std::size_t>(i)];
    }

    int m_edge;
    std::vector<int> m_node, m_element;
};

/// `out`: (nodes, 3), row-major: distinct values.
inline void Coordinates(int nodes, double* out) {
    for (int i = 0; i < nodes; ++i) {
        for (int c = 0; c < 3; ++c) out[3 * i + c] = 0.001 * i + c * 1e-9;
    }
}

}  // namespace bench
