#include "ScopeWriter.h"

#include <array>
#include <vector>

#include "Faces.h"
#include "Interrupt.h"
#include "KOVObjLabeler.h"
#include "KOVSimCtation.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr int kPartField = 0;
constexpr int kPlacingField = 1;
constexpr int kSystemField = 0;
constexpr int kGeometryField = 1;

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

    void WriteSurfaces(Scope const& scope) {
        for (NamedSurface const& surface : scope.surfaces.All()) {
            Breathe();
            KOVSimPosition const region =
                Collection(m_top, schema::Model_regionCollection(), schema::RegionCollection())
                    .AppendMember(schema::Surface());
            Name(region, scope, surface.name, schema::Model_regions());
            if (surface.members != nullptr || surface.faces.empty()) {
                region.SetPosition(
                    surface.ofNodes ? schema::Region_nodesCluster()
                                    : schema::Region_elementsCluster(),
                    KOVSimPosition(
                        Members(surface.ofNodes ? kNodeEntity : kElementEntity, surface.members)));
            }
            WriteFaces(region, surface, 0, kFirstEdge, schema::Region_elementsFacesCluster(),
                       schema::ElementFaces());
            WriteFaces(region, surface, kFirstEdge, kFaceNames,
                       schema::Region_elementsEdgesCluster(), schema::ElementEdges());
        }
    }

    void WriteOrientations(Scope& scope) {
        for (NamedOrientation& orientation : scope.orientations.All()) {
            Breathe();
            orientation.index = m_orientations++;
            KOVSimPosition const position =
                Collection(m_top, schema::Model_orientations(), schema::OrientationCollection())
                    .AppendMember(schema::Orientation());
            Name(position, scope, orientation.name, schema::Model_orientationsByName());
            KOVSimDataRecord const record = position.GetDataRecord();
            record.SetInt(kSystemField, orientation.system);
            record.SetDouble(kGeometryField, orientation.numbers, 11);
            if (orientation.system != 1 && orientation.system != 2) continue;
            position.SetPosition(schema::Orientation_axisPointA(), Point(orientation.numbers));
            position.SetPosition(schema::Orientation_axisPointB(), Point(orientation.numbers + 3));
        }
    }

    // Their values are written already.
    void WriteDistributions(Scope const& scope) {
        for (NamedDistribution const& distribution : scope.distributions.All()) {
            Breathe();
            Name(distribution.field, scope, distribution.name, schema::Model_distributions());
        }
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
            Breathe();
            set.stored = set.members.Store(collection);
            set.members = SetMembers();
            (set.internal ? internal : named)
                .Insert(ToKOVString(scope.Key(set.name)), KOVSimPosition(set.stored));
        }
    }

    void Breathe() {
        if (++m_written % 1000 == 0) ThrowIfInterrupted();
    }

    // The collection under a member; made when it is asked for first.
    static KOVSimPosition Collection(KOVSimPosition const& owner, int member, int type) {
        KOVSimPosition const found = owner.GetPosition(member);
        if (!found.IsNull()) return found;
        KOVSimPosition const made(owner.CreateTypedCollection(0, type));
        owner.SetPosition(member, made);
        return made;
    }

    void Name(KOVSimPosition const& object, Scope const& scope, std::string const& name, int map) {
        KOVString const key = ToKOVString(scope.Key(name));
        object.SetName(key);
        m_top.GetMap(map).Insert(key, object);
    }

    // The members of a set, of none for a null pointer; they are taken out of it.
    KOVSimCSetID Members(Entity const& entity, NamedSet* set) {
        KOVSimCollection& collection = m_model.Collection(entity);
        if (set == nullptr) return collection.CreateCSet(nullptr, 0, false);
        KOVSimCSetID const id = set->members.Store(collection);
        set->members = SetMembers();
        return id;
    }

    // Faces or edges of a surface: one compartment (elements, face) for each.
    void WriteFaces(KOVSimPosition const& region, NamedSurface const& surface, int from, int to,
                    int member, int type) {
        std::vector<KOVSimCompartment> compartments;
        for (auto const& [face, elements] : surface.faces) {
            if (face < from || face >= to) continue;
            KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(2);
            sets.Get(0) = Members(kElementEntity, elements);
            sets.Get(1) = FaceSet(face);
            compartments.emplace_back(sets);
        }
        if (compartments.empty()) return;
        KOVSimCtation::Array array(static_cast<int>(compartments.size()));
        for (std::size_t i = 0; i < compartments.size(); ++i) {
            array.Get(static_cast<int>(i)) = compartments[i];
        }
        region.SetPosition(member,
                           KOVSimPosition(m_top.CreateTypedDSet(KOVSimCtation(array), type)));
    }

    // The set of one face; each is made once.
    KOVSimCSetID FaceSet(int face) {
        KOVSimCSetID& set = m_faceSets[static_cast<std::size_t>(face)];
        if (!set.IsNull()) return set;
        bool const isEdge = face >= kFirstEdge;
        KOVSimPosition const symbols =
            isEdge
                ? Symbols(schema::Focus_edges(), schema::EdgeCollection(), kFirstEdge, kFaceNames)
                : Symbols(schema::Focus_faces(), schema::FaceCollection(), 0, kFirstEdge);
        KOVSimCollection collection(symbols.GetCollection());
        int const member = isEdge ? face - kFirstEdge : face;
        set = collection.CreateCSet(&member, 1, false);
        return set;
    }

    KOVSimPosition Symbols(int member, int type, int from, int to) {
        KOVSimPosition const focus = m_top.Focus();
        KOVSimPosition const symbols = Collection(focus, member, type);
        if (KOVSimCollection(symbols.GetCollection()).Space() > 0) return symbols;
        for (int face = from; face < to; ++face) {
            symbols.AddSymbol(KOVString(FaceName(face)), face - from, schema::Symbol());
        }
        return symbols;
    }

    KOVSimPosition Point(double const* xyz) {
        KOVSimDataRecord const record = m_top.CreateDataRecord(schema::AxisPoint());
        record.SetDouble(0, xyz, 3);
        return record.Pos();
    }

    static KOVSimCSetID Range(KOVSimCollection& collection, int first, int count) {
        if (count == 0) return collection.CreateCSet(nullptr, 0, false);
        return collection.CreateCSetStrided(first, count, 1, 1);
    }

    ModelWriter& m_model;
    KOVSimPosition m_top;
    int m_written = 0;
    int m_orientations = 0;
    std::array<KOVSimCSetID, kFaceNames> m_faceSets;
};

}  // namespace

void WriteScopes(ModelWriter& model, Scopes& scopes) {
    Writer writer(model);
    for (Scope& scope : scopes.All()) writer.WriteSets(scope);
    for (Scope const& scope : scopes.All()) {
        if (!scope.IsRoot()) writer.WriteInstance(scope);
    }
    for (Scope& scope : scopes.All()) {
        writer.WriteSurfaces(scope);
        writer.WriteOrientations(scope);
        writer.WriteDistributions(scope);
    }
}

void WriteLabels(ModelWriter& model, Scopes& scopes) {
    Writer writer(model);
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
