// The parts of which LayupPicture is made; for its sources only.
#pragma once

#include <string>
#include <vector>

#include "Layup.h"
#include "LayupKeys.h"
#include "LayupShape.h"
#include "Svg.h"

namespace kov::tool {

/// The lines of text beside the stack: columns, of which those without content are left out.
class LayupTable {
  public:
    explicit LayupTable(Layup const& layup, LayupKeys const& keys, LayupShape const& shape);

    double Width() const { return m_width; }

    /// Draws them from x on, the stack's bottom at `bottom`; leader lines begin at `stackRight`.
    void Draw(Svg& svg, double x, double bottom, double stackRight) const;

  private:
    struct Column {
        std::string head{};
        std::vector<std::string> texts{};
        double width = 0;
        bool right = false;
        bool chips = false;  ///< small lines in the direction of the plies go before the texts
    };

    void Add(Column column, double room, bool always);
    void DrawChip(Svg& svg, double x, double y, Layer const& layer) const;

    Layup const& m_layup;
    LayupShape const& m_shape;
    double m_size;
    double m_width = 0;
    std::vector<Column> m_columns;
};

/// Where the stack stands on the page.
struct StackPlace {
    double left;
    double right;
    double bottom;
};

/// Whether the reference surface of a shell is near enough to the stack; not where its offset is
/// no number.
bool ReferenceIsDrawn(Layup const& layup);

/// The hatch patterns that the bands and the legend use.
void DrawHatches(Svg& svg, LayupKeys const& keys);
/// `url(#...)` of the hatch of a direction; the wide one is for high bands.
std::string HatchOf(double angle, bool wide = false);
/// Directions that show a span from one edge to the other.
std::vector<double> SpanSteps(Extent const& angle);

void DrawBands(Svg& svg, Layup const& layup, LayupKeys const& keys, LayupShape const& shape,
               StackPlace const& place);
void DrawAxis(Svg& svg, Layup const& layup, LayupShape const& shape, StackPlace const& place);

struct LegendSize {
    std::size_t most;  ///< so many angles, and so many materials, are explained
    double height;
};
/// In `room` pixels if that can be.
LegendSize SizeOfLegend(LayupKeys const& keys, double room);
/// The directions with axes 1 and 2, then what hatches and colours mean.
void DrawLegend(Svg& svg, LayupKeys const& keys, LegendSize const& size, double x, double y);

}  // namespace kov::tool
