#include "ScopeWriter.h"

#include "Interrupt.h"
#include "KOVObjLabeler.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr int kPartField = 0;
constexpr int kPlacingField = 1;

class Writer {
  public:
    explicit Writer(ModelWriter& model) : m_model(model), m_top(model.Document().GetModel()) {}

    void WriteSets(Scope& scope) {
        WriteSets(scope, kNodeEntity, schema::Model_nodeSets(), schema::Model_otherNodeSets());
        WriteSets(scope, kElementEntity, schema::Model_elementSets(),
                  schema::Model_otherElementSets());
    }

    void WriteInstance(Scope const& scope) {
        KOVSimDataRecord const record = m_top.CreateDataRecord(schema::Instance());
        KOVSimPosition const instance = record.Pos();
        instance.SetName(ToKOVString(scope.name));
        record.SetString(kPartField, ToKOVString(scope.part->name));
        record.SetDouble(kPlacingField, scope.placing.Matrix().data(), 12);
        instance.SetPosition(
            schema::Instance_nodes(),
            KOVSimPosition(Range(m_model.NodeCollection(), scope.firstNode, scope.nodes)));
        instance.SetPosition(
            schema::Instance_elements(),
            KOVSimPosition(Range(m_model.ElementCollection(), scope.firstElement, scope.elements)));
        m_top.GetMap(schema::Model_instances()).Insert(ToKOVString(scope.name), instance);
    }

    void WriteLabels(Scope& scope, KOVObjLabeler& labeler, Entity const& entity) {
        LabelTable& table = scope.*entity.labels;
        if (table.Size() == 0) return;
        KOVBasVector<int> labels;
        KOVBasVector<int> ordinals;
        table.MoveTo(labels, ordinals);
        labeler.SetInstance(ToKOVString(scope.name), labels, ordinals);
    }

  private:
    void WriteSets(Scope& scope, Entity const& entity, int map, int internalMap) {
        KOVSimMap const named = m_top.GetMap(map);
        KOVSimMap const internal = m_top.GetMap(internalMap);
        KOVSimCollection& collection = m_model.Collection(entity);
        for (NamedSet& set : (scope.*entity.sets).Sets()) {
            if (++m_written % 1000 == 0) ThrowIfInterrupted();
            (set.internal ? internal : named)
                .Insert(ToKOVString(scope.Key(set.name)),
                        KOVSimPosition(set.members.Store(collection)));
            set.members = SetMembers();
        }
    }

    static KOVSimCSetID Range(KOVSimCollection& collection, int first, int count) {
        if (count == 0) return collection.CreateCSet(nullptr, 0, false);
        return collection.CreateCSetStrided(first, count, 1, 1);
    }

    ModelWriter& m_model;
    KOVSimPosition m_top;
    int m_written = 0;
};

}  // namespace

void WriteScopes(ModelWriter& model, Scopes& scopes) {
    Writer writer(model);
    for (Scope& scope : scopes.All()) writer.WriteSets(scope);
    for (Scope const& scope : scopes.All()) {
        if (!scope.IsRoot()) writer.WriteInstance(scope);
    }
    for (auto const type : {KOVObjLabelerNodes, KOVObjLabelerElements}) {
        KOVObjLabeler labeler(model.Document(), type);
        for (Scope& scope : scopes.All()) {
            ThrowIfInterrupted();
            writer.WriteLabels(scope, labeler,
                               type == KOVObjLabelerNodes ? kNodeEntity : kElementEntity);
        }
    }
}

}  // namespace kov::tool
