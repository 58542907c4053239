#include "ResultSeries.h"

#include "DocumentReader.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr int kChunk = 256;

struct Series {
    int (*members)();         ///< link of the step to the set of its members
    int (*owner)();           ///< type of the record that owns the collection
    int (*collection)();      ///< link of the owner to the collection
    int (*collectionType)();  ///
    int (*data)();            ///< link of the owner to the numbers
    int (*dataType)();
};

constexpr Series kTimes{
    schema::Task_times,     schema::TimeDescription,      schema::TimeDescription_timeCollection,
    schema::TimeCollection, schema::TimeDescription_data, schema::TimeData,
};
constexpr Series kFrequencies{
    schema::Task_frequencies,
    schema::FrequencyDescription,
    schema::FrequencyDescription_frequencyCollection,
    schema::FrequencyCollection,
    schema::FrequencyDescription_data,
    schema::FrequencyData,
};
constexpr Series kModes{
    schema::Task_modes,
    schema::ModalSystem,
    schema::ModalSystem_modes,
    schema::ModeCollection,
    schema::ModalSystem_eigenvalues,
    schema::ModalEigenvalues,
};

// A collection without members, and a distribution over it that has no drawer yet.
void MakeSeries(Series const& series, KOVSimPosition const& owner) {
    KOVSimCollectionID const collection = owner.CreateTypedCollection(0, series.collectionType());
    owner.SetPosition(series.collection(), KOVSimPosition(collection));
    KOVSimGrid::CollectionArray grid(1);
    grid.Get(0) = collection;
    owner.SetPosition(series.data(), KOVSimPosition(owner.CreateTypedDistribution(
                                         KOVSimGrid(grid), series.dataType(),
                                         KOVSimRangeType(KOVSimTypeKeyDouble))));
}

[[noreturn]] void FailSeries(KOVSimPosition const& step) {
    throw DocumentFault("step '" + Shown(Plain(step.Name(-1))) +
                        "' has times, frequencies or modes that no results can be added to");
}

void WriteNumber(KOVSimDistribution const& numbers, KOVSimCSet const& member, double number) {
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>
        drawers;
    numbers.QueryDrawers(drawers);
    KOVSimTransfer write(numbers);
    write.SetWrite().SetBufferPadding(false);
    if (drawers.Size() > 0 && drawers.ConstGet(0).extendableDim == 0) {
        write.SetAutoExtend().SetDrawer(drawers.ConstGet(0).drawerID);
    } else {
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(1);
        chunks.Get(0) = kChunk;
        write.SetMakeNewDrawerChunked(chunks).SetExtendableDim(0);
    }
    write.SetDim(0, member).CheckView();
    write.SetBuffer(0, static_cast<void const*>(&number), sizeof number);
    write.ExecWrite().RelinquishBuffers();
}

void Append(Series const& series, KOVSimPosition const& step, KOVSimPosition const& owner,
            double number) {
    KOVSimCollection collection = CollectionAt(owner.GetPosition(series.collection()));
    KOVSimDistributionID const id = owner.GetPosition(series.data()).GetDistribution();
    if (!collection.IsPresent() || id.IsNull()) FailSeries(step);
    KOVSimDistribution const numbers(id);
    if (numbers.NumDimensions() != 1 || numbers.Range().Key() != KOVSimTypeKeyDouble ||
        numbers.Grid().Collections().ConstGet(0) != collection.ID()) {
        FailSeries(step);
    }
    int const member = collection.Space();
    collection.ExtendSpace(member + 1);
    KOVSimCSet const added = collection.CreateVolatileCSetStrided(member, 1, 1, 1);
    WriteNumber(numbers, added, number);
    KOVSimCSet const before(step.GetPosition(series.members()));
    if (!before.IsEmpty() && before.CollectionID() != collection.ID()) FailSeries(step);
    KOVSimCSet all = before.IsEmpty() ? added : before.Union(added);
    step.SetPosition(series.members(), KOVSimPosition(all.RegisterWithCollection()));
}

// The description that owns the collection of the step's members; a new one if it has none.
void AppendDescribed(Series const& series, int descriptions, KOVSimPosition const& step,
                     double number) {
    KOVSimPosition const members = step.GetPosition(series.members());
    KOVSimPosition owner;
    if (members.IsNull()) {
        owner = step.CreateDataRecord(series.owner()).Pos();
        MakeSeries(series, owner);
        step.Focus().GetSet(descriptions).Insert(owner);
    } else {
        owner = KOVSimPosition(KOVSimCSet(members).CollectionID()).Parent(series.collection());
        if (owner.IsNull()) FailSeries(step);
    }
    Append(series, step, owner, number);
}

}  // namespace

void AppendTime(KOVSimPosition const& step, double time) {
    AppendDescribed(kTimes, schema::Focus_timeDescriptions(), step, time);
}

void AppendFrequency(KOVSimPosition const& step, double frequency) {
    AppendDescribed(kFrequencies, schema::Focus_frequencyDescriptions(), step, frequency);
}

void AppendMode(KOVSimPosition const& step, double eigenvalue) {
    KOVSimPosition system = step.GetPosition(schema::Task_feSystem());
    if (!system.IsNull() && !system.IsA(schema::ModalSystem())) FailSeries(step);
    if (system.IsNull()) {
        system = step.CreateDataRecord(schema::ModalSystem()).Pos();
        step.SetPosition(schema::Task_feSystem(), system);
    }
    if (system.GetPosition(kModes.collection()).IsNull()) MakeSeries(kModes, system);
    Append(kModes, step, system, eigenvalue);
}

}  // namespace kov::tool
