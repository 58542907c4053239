#include "IntegrationPoints.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <utility>

namespace kov::tool {

namespace {

using Place = IntegrationPoints::Place;
using Values = std::vector<double>;

enum class Parent { None, Line, Triangle, Quad, Tetra, Pyramid, Wedge, Hexahedron };

Parent ParentOf(Cell cell) {
    switch (cell) {
        case Cell::Line:
        case Cell::QuadraticEdge:
            return Parent::Line;
        case Cell::Triangle:
        case Cell::QuadraticTriangle:
            return Parent::Triangle;
        case Cell::Quad:
        case Cell::QuadraticQuad:
        case Cell::BiquadraticQuad:
            return Parent::Quad;
        case Cell::Tetra:
        case Cell::QuadraticTetra:
            return Parent::Tetra;
        case Cell::Pyramid:
            return Parent::Pyramid;
        case Cell::Wedge:
        case Cell::QuadraticWedge:
            return Parent::Wedge;
        case Cell::Hexahedron:
        case Cell::QuadraticHexahedron:
            return Parent::Hexahedron;
        default:
            return Parent::None;
    }
}

std::vector<Place> CornersOf(Parent parent) {
    switch (parent) {
        case Parent::Line:
            return {{-1, 0, 0}, {1, 0, 0}};
        case Parent::Triangle:
            return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        case Parent::Quad:
            return {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};
        case Parent::Tetra:
            return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        case Parent::Pyramid:
            return {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}, {0, 0, 1}};
        case Parent::Wedge:
            return {{0, 0, -1}, {1, 0, -1}, {0, 1, -1}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
        case Parent::Hexahedron:
            return {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1},
                    {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1}};
        case Parent::None:
            break;
    }
    return {};
}

Place Mean(std::vector<Place> const& places) {
    Place mean{};
    for (Place const& place : places) {
        for (std::size_t k = 0; k < 3; ++k) {
            mean[k] += place[k] / static_cast<double>(places.size());
        }
    }
    return mean;
}

std::vector<Place> NodesOf(ElementType const& type, std::vector<Place> const& corners) {
    // Whatever is neither corner nor middle of an edge is the middle of the element.
    std::vector<Place> nodes(static_cast<std::size_t>(type.nodes), Mean(corners));
    std::span<int const> const edges = MiddleNodes(type);
    std::vector<bool> isMiddle(nodes.size());
    for (std::size_t e = 0; e + 2 < edges.size(); e += 3) {
        isMiddle[static_cast<std::size_t>(edges[e + 2])] = true;
    }
    std::size_t corner = 0;
    for (std::size_t n = 0; n < nodes.size() && corner < corners.size(); ++n) {
        if (!isMiddle[n]) nodes[n] = corners[corner++];
    }
    for (std::size_t e = 0; e + 2 < edges.size(); e += 3) {
        nodes[static_cast<std::size_t>(edges[e + 2])] =
            Mean({nodes[static_cast<std::size_t>(edges[e])],
                  nodes[static_cast<std::size_t>(edges[e + 1])]});
    }
    return nodes;
}

struct Rule {
    std::vector<Place> points;
    Values weights;
};

/// Zeros of the Legendre polynomial of degree n, ascending, by Newton's method.
Rule Gauss(int n) {
    Rule rule;
    for (int i = n - 1; i >= 0; --i) {
        double x = std::cos(std::numbers::pi * (i + 0.75) / (n + 0.5));
        double slope = 1;
        for (int turn = 0; turn < 20; ++turn) {
            double value = 1, before = 0;
            for (int k = 1; k <= n; ++k) {
                before = std::exchange(value, ((2 * k - 1) * x * value - (k - 1) * before) / k);
            }
            slope = n * (x * value - before) / (x * x - 1);
            x -= value / slope;
        }
        rule.points.push_back({x, 0, 0});
        rule.weights.push_back(2 / ((1 - x * x) * slope * slope));
    }
    return rule;
}

/// One point in the middle, or one beside each corner, so that squares are integrated exactly.
Rule Simplex(std::vector<Place> const& corners, int count, double measure) {
    Place const middle = Mean(corners);
    if (count == 1) return {{middle}, {measure}};
    double const share = 1 / std::sqrt(static_cast<double>(count) + 1);
    Rule rule;
    for (Place point : corners) {
        for (std::size_t k = 0; k < 3; ++k) point[k] = middle[k] + share * (point[k] - middle[k]);
        rule.points.push_back(point);
        rule.weights.push_back(measure / count);
    }
    return rule;
}

Rule Pyramid(int count) {
    double const volume = 4.0 / 3;
    if (count == 1) return {{{0, 0, 0.25}}, {volume}};
    // Two heights and the share of the lower one integrate 1, z and z * z exactly; the distance
    // from the axis does so for x * x.
    double const low = 1.0 / 6, high = 7.0 / 10, share = 27.0 / 32;
    double const x = std::sqrt(1 / (5 * share));
    return {{{-x, -x, low}, {x, -x, low}, {x, x, low}, {-x, x, low}, {0, 0, high}},
            {share * volume / 4, share * volume / 4, share * volume / 4, share * volume / 4,
             (1 - share) * volume}};
}

/// All pairs of points, those of `fast` fastest; the points of `slow` lie on a line, which becomes
/// direction `direction`.
Rule Product(Rule const& fast, Rule const& slow, std::size_t direction) {
    Rule rule;
    for (std::size_t j = 0; j < slow.points.size(); ++j) {
        for (std::size_t i = 0; i < fast.points.size(); ++i) {
            Place point = fast.points[i];
            point[direction] = slow.points[j][0];
            rule.points.push_back(point);
            rule.weights.push_back(fast.weights[i] * slow.weights[j]);
        }
    }
    return rule;
}

/// 1, x, x * x, ...
Values Powers(double x, int count) {
    Values powers(1, 1.0);
    while (static_cast<int>(powers.size()) < count) powers.push_back(powers.back() * x);
    return powers;
}

Values Products(Values const& a, Values const& b) {
    Values products;
    for (double const y : b) {
        for (double const x : a) products.push_back(x * y);
    }
    return products;
}

/// What is known of a rule before its points: how many there are in each direction.
struct Counts {
    int flat = 0;  ///< in the simplex or the pyramid
    int line = 0;  ///< along each line
};

/// Nothing (both 0) where there is no such rule.
Counts CountsOf(Parent parent, int count) {
    auto const power = [count](int exponent) -> Counts {
        for (int n = 1; n <= 3; ++n) {
            if (static_cast<int>(std::lround(std::pow(n, exponent))) == count) return {1, n};
        }
        return {};
    };
    switch (parent) {
        case Parent::Line:
            return power(1);
        case Parent::Quad:
            return power(2);
        case Parent::Hexahedron:
            return power(3);
        case Parent::Triangle:
            return count == 1 || count == 3 ? Counts{count, 1} : Counts{};
        case Parent::Tetra:
            return count == 1 || count == 4 ? Counts{count, 1} : Counts{};
        case Parent::Pyramid:
            return count == 1 || count == 5 ? Counts{count, 1} : Counts{};
        case Parent::Wedge:
            if (count == 1 || count == 2) return {1, count};
            return count == 6 || count == 9 ? Counts{3, count / 3} : Counts{};
        case Parent::None:
            break;
    }
    return {};
}

Rule RuleOf(Parent parent, Counts counts, std::vector<Place> const& corners) {
    Rule line = Gauss(counts.line);
    switch (parent) {
        case Parent::Triangle:
            return Simplex(corners, counts.flat, 1.0 / 2);
        case Parent::Tetra:
            return Simplex(corners, counts.flat, 1.0 / 6);
        case Parent::Pyramid:
            return Pyramid(counts.flat);
        case Parent::Wedge:
            return Product(Simplex(CornersOf(Parent::Triangle), counts.flat, 1.0 / 2), line, 2);
        case Parent::Quad:
            return Product(line, line, 1);
        case Parent::Hexahedron:
            return Product(Product(line, line, 1), line, 2);
        default:
            return line;
    }
}

/// The values of the functions at a place: as many as the rule has points.
Values FunctionsAt(Place const& at, Parent parent, Counts counts) {
    auto const [x, y, z] = at;
    Values linear = counts.flat == 1 ? Values{1} : Values{1, x, y};
    switch (parent) {
        case Parent::Triangle:
            return linear;
        case Parent::Tetra:
            return counts.flat == 1 ? Values{1} : Values{1, x, y, z};
        case Parent::Pyramid:
            // The last one is bilinear on the base and linear on the other faces; it vanishes
            // towards the apex.
            return counts.flat == 1 ? Values{1} : Values{1, x, y, z, z < 1 ? x * y / (1 - z) : 0};
        case Parent::Wedge:
            return Products(linear, Powers(z, counts.line));
        case Parent::Quad:
            return Products(Powers(x, counts.line), Powers(y, counts.line));
        case Parent::Hexahedron:
            return Products(Products(Powers(x, counts.line), Powers(y, counts.line)),
                            Powers(z, counts.line));
        default:
            return Powers(x, counts.line);
    }
}

/// The coefficients of one node: c with sum over i of c(i) * atPoints(i, f) = atNode(f) for each
/// function f. By elimination, with the largest pivot of each column.
Values Solve(std::vector<Values> const& atPoints, Values const& atNode) {
    std::size_t const n = atNode.size();
    std::vector<Values> rows(n, Values(n + 1));
    for (std::size_t f = 0; f < n; ++f) {
        for (std::size_t i = 0; i < n; ++i) rows[f][i] = atPoints[i][f];
        rows[f][n] = atNode[f];
    }
    for (std::size_t k = 0; k < n; ++k) {
        auto const from = rows.begin() + static_cast<std::ptrdiff_t>(k);
        std::iter_swap(from,
                       std::max_element(from, rows.end(), [k](Values const& a, Values const& b) {
                           return std::abs(a[k]) < std::abs(b[k]);
                       }));
        for (std::size_t f = 0; f < n; ++f) {
            if (f == k) continue;
            double const share = rows[f][k] / rows[k][k];
            for (std::size_t i = k; i <= n; ++i) rows[f][i] -= share * rows[k][i];
        }
    }
    Values solution;
    for (std::size_t k = 0; k < n; ++k) solution.push_back(rows[k][n] / rows[k][k]);
    return solution;
}

}  // namespace

std::optional<IntegrationPoints> FindIntegrationPoints(ElementType const& type, int pointCount) {
    Parent const parent = ParentOf(type.cell);
    Counts const counts = CountsOf(parent, pointCount);
    if (counts.line == 0) return std::nullopt;
    std::vector<Place> const corners = CornersOf(parent);
    Rule rule = RuleOf(parent, counts, corners);

    IntegrationPoints found;
    found.nodes = NodesOf(type, corners);
    std::vector<Values> atPoints;
    for (Place const& point : rule.points) {
        atPoints.push_back(FunctionsAt(point, parent, counts));
    }
    for (Place const& node : found.nodes) {
        for (double const coefficient : Solve(atPoints, FunctionsAt(node, parent, counts))) {
            found.toNodes.push_back(static_cast<float>(coefficient));
        }
    }
    found.points = std::move(rule.points);
    found.weights = std::move(rule.weights);
    return found;
}

}  // namespace kov::tool
