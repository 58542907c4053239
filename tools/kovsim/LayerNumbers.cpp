#include "LayerNumbers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "DocumentReader.h"
#include "Interrupt.h"
#include "KOVObjMeshedField.h"
#include "KOVSimFTable.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "TableField.h"

namespace kov::tool {
namespace {

using Drawers =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;

constexpr int kBlock = 1 << 18;  // ordinals in one transfer
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

template <class Work>
void ForBlocks(KOVSimCSet const& elements, Work const& work) {
    if (elements.IsEmpty()) return;
    KOVSimCollection const collection(elements.CollectionID());
    long long const bounds = elements.Bounds();
    std::int64_t const last = bounds >> 32;
    for (std::int64_t first = bounds & 0xffffffff; first <= last; first += kBlock) {
        ThrowIfInterrupted();
        auto const count = static_cast<int>(std::min<std::int64_t>(kBlock, last - first + 1));
        KOVSimCSet const block = elements.Intersection(
            collection.CreateVolatileCSetStrided(static_cast<int>(first), count, 1, 1));
        if (!block.IsEmpty()) work(block);
    }
}

void Widen(std::optional<std::pair<double, double>>& range, double number) {
    if (std::isnan(number)) return;
    if (!range) range.emplace(number, number);
    range->first = std::min(range->first, number);
    range->second = std::max(range->second, number);
}

}  // namespace

ShellField::ShellField(KOVSimPosition const& field, KOVSimCollectionID const& slots,
                       KOVSimCollectionID const& elements, char const* called) {
    if (field.IsNull()) return;
    auto const refuse = [called](char const* why) {
        throw DocumentFault(std::string("the ") + called + " of the bulk layers " + why);
    };
    KOVSimDistributionID const id = KOVObjMeshedField(field).GetDistribution().GetDistribution();
    if (id.IsNull()) refuse("have no distribution");
    m_distribution = KOVSimDistribution(id);
    if (m_distribution.NumDimensions() != 2 ||
        m_distribution.Range().Key() != KOVSimTypeKeyDouble ||
        m_distribution.Grid().Collections().ConstGet(0) != slots ||
        m_distribution.Grid().Collections().ConstGet(1) != elements) {
        refuse("are not real numbers by layer slot and element");
    }
    Drawers drawers;
    m_distribution.QueryDrawers(drawers);
    for (KOVSimPersistentDrawerDesc const& drawer : drawers) {
        KOVSimCSet const slot = drawer.compartment.CSet(0);
        if (slot.Size() != 1) refuse("have a drawer that is not of exactly one layer");
        m_drawers.push_back({slot[0], drawer.drawerID, slot, drawer.compartment.CSet(1)});
    }
}

NumbersByElement ShellField::Layer(int layer) const {
    std::vector<Drawer> own;
    for (Drawer const& drawer : m_drawers) {
        if (drawer.layer == layer) own.push_back(drawer);
    }
    if (own.empty()) return {};
    return [own, distribution = m_distribution](KOVSimCSet const& elements, double* numbers) {
        KOVSimTransfer transfer(distribution);
        transfer.SetRead().SetBufferPadding(false);
        if (own.size() == 1) transfer.SetDrawer(own.front().id);
        transfer.SetDim(0, own.front().slot).SetDim(1, elements);
        transfer.CheckView();
        transfer.SetBuffer(0, numbers,
                           sizeof(double) * static_cast<unsigned long>(elements.Size()));
        transfer.ExecRead().RelinquishBuffers();
    };
}

NumbersByElement TableFieldNumbers(KOVSimPosition const& field,
                                   KOVSimCollectionID const& elements) {
    double fill = kNone;
    if (HasDefaults(field)) {
        KOVSimFTable(field.GetPosition(schema::FieldFTable_table()).GetFTable()).GetData(&fill, 1);
    }
    KOVSimDistributionID const id =
        field.GetPosition(schema::FieldFTable_distribution()).GetDistribution();
    if (id.IsNull()) {
        return [fill](KOVSimCSet const& set, double* numbers) {
            std::fill_n(numbers, set.Size(), fill);
        };
    }
    KOVSimDistribution const distribution(id);
    if (distribution.NumDimensions() != 2 || distribution.Range().Key() != KOVSimTypeKeyDouble ||
        distribution.Grid().Collections().ConstGet(0) != elements) {
        throw DocumentFault("a table field of a layer is not real numbers by element and column");
    }
    KOVSimCollection const columns(distribution.Grid().Collections().ConstGet(1));
    return [fill, distribution, columns](KOVSimCSet const& set, double* numbers) {
        std::fill_n(numbers, set.Size(), fill);
        KOVSimTransfer transfer(distribution);
        transfer.SetRead().SetBufferPadding(false);
        transfer.SetDim(0, set).SetDim(1, columns.CreateVolatileCSetStrided(0, 1, 1, 1));
        transfer.CheckView();
        transfer.SetBuffer(0, numbers, sizeof(double) * static_cast<unsigned long>(set.Size()));
        transfer.ExecRead().RelinquishBuffers();
    };
}

void ReadLayerNumbers(Layup& layup, LayerSources const& sources, KOVSimCSet const& elements,
                      bool values) {
    bool varies = false;
    double constant = 0;
    for (std::size_t i = 0; i < layup.layers.size(); ++i) {
        LayerNumber const& thickness = layup.layers[i].thickness;
        varies = varies || sources.thickness[i];
        if (thickness.variation == LayerNumber::Variation::None) constant = kNone;
        if (thickness.variation == LayerNumber::Variation::Constant) {
            constant += thickness.value.value_or(kNone);
        }
    }
    bool complete = true;
    std::vector<double> numbers;
    std::vector<double> stack;
    ForBlocks(elements, [&](KOVSimCSet const& block) {
        auto const size = static_cast<std::size_t>(block.Size());
        auto const read = [&](NumbersByElement const& source, LayerNumber& number) {
            numbers.assign(size, kNone);
            source(block, numbers.data());
            if (layup.element) {
                if (!std::isnan(numbers.front())) number.value = numbers.front();
            } else {
                for (double const each : numbers) Widen(number.range, each);
            }
            if (values) number.values.insert(number.values.end(), numbers.begin(), numbers.end());
        };
        stack.assign(size, constant);
        for (std::size_t i = 0; i < layup.layers.size(); ++i) {
            if (sources.angle[i]) read(sources.angle[i], layup.layers[i].angle);
            if (!sources.thickness[i]) continue;
            read(sources.thickness[i], layup.layers[i].thickness);
            for (std::size_t at = 0; at < size; ++at) stack[at] += numbers[at];
        }
        for (double const each : stack) {
            complete = complete && std::isfinite(each);
            Widen(layup.thicknessRange, each);
        }
    });
    if (!varies || !complete || layup.element) layup.thicknessRange.reset();
}

}  // namespace kov::tool
