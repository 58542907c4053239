#include "FieldRanges.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "FieldForm.h"

namespace kov::tool {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Kind = FieldForm::Kind;

// The extremes of one column of a block, by row; -1 where all are no numbers.
struct BlockRange {
    double low = kInfinity;
    double high = -kInfinity;
    std::ptrdiff_t lowRow = -1;
    std::ptrdiff_t highRow = -1;
    std::int64_t nans = 0;
};

// Two steps: the values alone go through registers; the rows are looked for once they are known.
BlockRange RangeOfColumn(double const* values, std::size_t rows, std::size_t width) {
    BlockRange range;
    double const* at = values;
    for (std::size_t i = 0; i < rows; ++i, at += width) {
        double const value = *at;
        range.low = value < range.low ? value : range.low;
        range.high = value > range.high ? value : range.high;
        range.nans += value != value ? 1 : 0;
    }
    if (range.nans == static_cast<std::int64_t>(rows)) return range;
    auto const find = [&](double wanted) {
        std::size_t row = 0;
        while (values[row * width] != wanted) ++row;
        return static_cast<std::ptrdiff_t>(row);
    };
    range.lowRow = find(range.low);
    range.highRow = find(range.high);
    return range;
}

bool StandsBefore(FieldExtreme const& a, FieldExtreme const& b) {
    return std::pair(a.item, a.point) < std::pair(b.item, b.point);
}

void Merge(FieldRange& into, BlockRange const& range, std::vector<int> const& items, int point) {
    into.nans += range.nans;
    if (range.lowRow < 0) return;
    FieldExtreme const low{range.low, items[static_cast<std::size_t>(range.lowRow)], point};
    FieldExtreme const high{range.high, items[static_cast<std::size_t>(range.highRow)], point};
    if (into.lowest.item < 0 || low.value < into.lowest.value ||
        (low.value == into.lowest.value && StandsBefore(low, into.lowest))) {
        into.lowest = low;
    }
    if (into.highest.item < 0 || high.value > into.highest.value ||
        (high.value == into.highest.value && StandsBefore(high, into.highest))) {
        into.highest = high;
    }
}

// The square of the magnitude or of the Mises stress, which has its extremes at the same rows.
double DerivedSquare(Kind kind, std::array<double, 6> const& v) {
    if (kind == Kind::Vector) return v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
    double const a = v[0] - v[1];
    double const b = v[1] - v[2];
    double const c = v[2] - v[0];
    return (a * a + b * b + c * c) / 2 + 3 * (v[3] * v[3] + v[4] * v[4] + v[5] * v[5]);
}

// What follows from the components of one row, in the order of the form; 0 for one that the field
// lacks.
double Derived(Kind kind, std::array<double, 6> const& v) {
    if (kind == Kind::Vector) return std::hypot(v[0], v[1], v[2]);
    return std::sqrt(DerivedSquare(kind, v));
}

std::string DerivedLabel(FieldContent const& field, Kind kind) {
    if (kind == Kind::Vector) return "magnitude";
    return kind == Kind::SymmetricTensor && field.head.label == "S" ? "Mises" : "";
}

}  // namespace

std::vector<FieldRange> RangesOf(FieldContent const& field) {
    FieldForm const form = FormOf(field);
    std::vector<FieldRange> ranges(field.components.size());
    std::vector<std::size_t> order;
    for (FieldForm::Column const& column : form.columns) {
        if (column.place < 0) continue;
        auto const place = static_cast<std::size_t>(column.place);
        ranges[place].label = column.label;
        ranges[place].symbol = field.components[place].name;
        order.push_back(place);
    }
    FieldRange derived;
    derived.label = DerivedLabel(field, form.kind);
    derived.derived = true;

    std::vector<double> squares;
    for (FieldDrawer const& drawer : field.drawers) {
        std::array<int, 6> from;
        from.fill(-1);
        for (std::size_t i = 0; i < form.columns.size() && i < from.size(); ++i) {
            from[i] = drawer.ColumnOf(form.columns[i].place);
        }
        bool const whole = drawer.Width() == field.components.size();
        ForRows(drawer, [&](std::vector<int> const& items, std::vector<double> const& values) {
            std::size_t const width = drawer.Width();
            for (std::size_t k = 0; k < width; ++k) {
                Merge(ranges[drawer.places[k]],
                      RangeOfColumn(values.data() + k, items.size(), width), items, drawer.point);
            }
            if (derived.label.empty() || !whole) return;
            auto const row = [&](std::size_t i) {
                std::array<double, 6> v{};
                for (std::size_t k = 0; k < v.size(); ++k) {
                    if (from[k] >= 0) v[k] = values[i * width + static_cast<std::size_t>(from[k])];
                }
                return v;
            };
            squares.resize(items.size());
            for (std::size_t i = 0; i < items.size(); ++i) {
                squares[i] = DerivedSquare(form.kind, row(i));
            }
            BlockRange range = RangeOfColumn(squares.data(), items.size(), 1);
            if (range.lowRow >= 0) {
                range.low = Derived(form.kind, row(static_cast<std::size_t>(range.lowRow)));
                range.high = Derived(form.kind, row(static_cast<std::size_t>(range.highRow)));
            }
            Merge(derived, range, items, drawer.point);
        });
    }
    std::vector<FieldRange> ordered;
    ordered.reserve(order.size() + 1);
    for (std::size_t const place : order) ordered.push_back(std::move(ranges[place]));
    if (!derived.label.empty() && derived.lowest.item >= 0) ordered.push_back(std::move(derived));
    return ordered;
}

}  // namespace kov::tool
