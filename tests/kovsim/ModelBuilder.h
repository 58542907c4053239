// Models with several instances, made through the library as any writer may make them.
#pragma once

#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjLabeler.h"
#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVSrvElementConnectivity.h"
#include "KOVSrvNodalCoordinates.h"
#include "zdm_ComponentSymbols.h"

namespace kov::test {

/// Writes into a document that has the skeleton, in one transaction until Commit().
class ModelBuilder {
  public:
    using Ints = std::vector<int>;

    explicit ModelBuilder(KOVObjDocument const& document)
        : m_document(document),
          m_transaction(document.ContextID()),
          m_mesh(document.GetMesh()),
          m_connectivity(m_mesh.GetConnectivity(), 100),
          m_nodes(m_mesh.GetNodeCollection().GetCollection()),
          m_elements(m_mesh.GetElementCollection().GetCollection()) {}

    void Commit() { m_transaction.Commit(); }

    KOVSimPosition Model() const { return m_document.GetModel(); }
    KOVObjMesh const& Mesh() const { return m_mesh; }
    KOVSimCollection& Nodes() { return m_nodes; }
    KOVSimCollection& Elements() { return m_elements; }

    void Space(int nodes, int elements) {
        m_nodes.ExtendSpace(nodes);
        m_elements.ExtendSpace(elements);
    }
    /// Nodes [0, count) stand at (i, i / 2, 0).
    void Coordinates(int count) {
        int const components[] = {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3};
        KOVSimCollection collection(m_document.GetComponentCollection().GetCollection());
        std::vector<double> xyz;
        for (int i = 0; i < count; ++i)
            xyz.insert(xyz.end(), {static_cast<double>(i), 0.5 * i, 0.0});
        KOVSrvNodalCoordinates(m_mesh.GetCoordinates(), 100)
            .Append(m_transaction, m_nodes.CreateTempCSetStrided(0, count, 1, 1),
                    collection.CreateTempCSet(components, 3, false), xyz.data());
    }
    void Element(int element, Ints const& nodes) {
        KOVSimDSet const dset(m_mesh.GetConnectivity());
        KOVSimDistribution const distribution(dset.GetRelationalDistributionID());
        KOVSimCollection positions(distribution.Grid().Collections().ConstGet(1));
        // Elements of as many nodes share a drawer: the key only has to be the same.
        KOVSimCollection const points(m_document.GetPointCollection().GetCollection());
        int const count = static_cast<int>(nodes.size());
        m_connectivity.Append(m_transaction, m_document.GetRecord(points.ID(), count),
                              m_elements.CreateTempCSetStrided(element, 1, 1, 1),
                              positions.CreateTempCSetStrided(0, count, 1, 1), nodes.data());
    }
    void Labels(KOVObjLabelerType type, char const* instance, Ints const& labels,
                Ints const& ordinals) {
        KOVBasVector<int> left;
        KOVBasVector<int> right;
        for (int const label : labels) left.PushBack(label);
        for (int const ordinal : ordinals) right.PushBack(ordinal);
        KOVObjLabeler labeler(m_document, type);
        labeler.Read();
        labeler.SetInstance(instance, left, right);
    }
    KOVSimPosition NodeSet(Ints const& members) {
        return KOVSimPosition(
            m_nodes.CreateCSet(members.data(), static_cast<int>(members.size()), false));
    }
    KOVSimPosition ElementSet(Ints const& members) {
        return KOVSimPosition(
            m_elements.CreateCSet(members.data(), static_cast<int>(members.size()), false));
    }
    void Put(int map, char const* key, KOVSimPosition const& object) const {
        Model().GetMap(map).Insert(key, object);
    }
    KOVSimPosition Record(int type) const { return m_document.CreateDataRecord(type).Pos(); }

    /// An element specification with its shape, by the number of the shape symbol.
    KOVSimPosition Specification(char const* name, int shape) const {
        KOVSimPosition const specification =
            m_document.GetElementSpecCollection().AppendMember(schema::ElementSpec());
        specification.SetName(name);
        KOVSimCollectionID const shapes = m_document.GetShapeCollection().GetCollection();
        specification.SetPosition(schema::ElementSpec_shape(), m_document.GetRecord(shapes, shape));
        return specification;
    }
    struct Assigned {
        KOVSimPosition specification;
        Ints elements;
    };
    void Assignment(std::vector<Assigned> const& all) {
        KOVSimCollection specifications(m_document.GetElementSpecCollection().GetCollection());
        std::vector<Pair> pairs;
        for (Assigned const& each : all) {
            int const index = m_document.GetCMemberIndex(each.specification);
            pairs.push_back({KOVSimCSetID(specifications.CreateCSet(&index, 1, false)),
                             ElementSet(each.elements).GetCSet()});
        }
        m_mesh.SetElementSpecAssignment(Relation(pairs, schema::ElementSpecAssignment()));
    }
    struct Pair {
        KOVSimCSetID first;
        KOVSimCSetID second;
    };
    /// A dataset with one compartment for each pair.
    KOVSimPosition Relation(std::vector<Pair> const& pairs, int type) const {
        KOVSimCtation::Array compartments(static_cast<int>(pairs.size()));
        int at = 0;
        for (Pair const& pair : pairs) {
            KOVSimArray<KOVSimCSetID, KOVSimArrayCopyClassPolicy<KOVSimCSetID>> sets(2);
            sets.Get(0) = pair.first;
            sets.Get(1) = pair.second;
            compartments.Get(at++) = KOVSimCompartment(sets);
        }
        return KOVSimPosition(Model().CreateTypedDSet(KOVSimCtation(compartments), type));
    }
    /// A collection of symbols with these names.
    KOVSimCollection Symbols(std::vector<char const*> const& names, int type) const {
        KOVSimPosition const collection(Model().CreateTypedCollection(0, type));
        int symbol = 0;
        for (char const* const name : names) collection.AddSymbol(name, symbol++, schema::Symbol());
        return KOVSimCollection(collection.GetCollection());
    }

  private:
    KOVObjDocument m_document;
    KOVSimTransaction m_transaction;
    KOVObjMesh m_mesh;
    KOVSrvElementConnectivity m_connectivity;
    KOVSimCollection m_nodes;
    KOVSimCollection m_elements;
};

/// The model of most tests: instances P-1 and My Part of five nodes each, a root node and a node
/// without label; sets, a surface and an orientation of each sort.
inline void BuildAssembly(KOVObjDocument const& document) {
    using Ints = ModelBuilder::Ints;
    ModelBuilder model(document);
    model.Space(12, 5);
    model.Coordinates(11);
    model.Labels(KOVObjLabelerNodes, "P-1", {30, 10, 20, 40, 7}, {0, 1, 2, 3, 4});
    model.Labels(KOVObjLabelerNodes, "My Part", {1, 2, 3, 4, 5}, {5, 6, 7, 8, 9});
    model.Labels(KOVObjLabelerNodes, "", {100}, {10});
    model.Labels(KOVObjLabelerElements, "P-1", {1, 2}, {0, 1});
    model.Labels(KOVObjLabelerElements, "My Part", {1}, {2});
    model.Labels(KOVObjLabelerElements, "", {9}, {3});
    model.Element(0, {0, 1, 2, 3});
    model.Element(1, {1, 2, 3, 4});
    model.Element(2, {5, 6, 7});
    model.Element(3, {0, 5, 10, 11});
    constexpr int kTriangle = 16;
    constexpr int kQuadrilateral = 11;
    KOVSimPosition const s4 = model.Specification("S4", kQuadrilateral);
    KOVSimPosition const s3 = model.Specification("S3", kTriangle);
    KOVSimPosition const s4r = model.Specification("S4R", kQuadrilateral);
    model.Assignment({{s4, {0}}, {s3, {2}}, {s4r, {1}}});

    model.Put(schema::Model_nodeSets(), "P-1_Top", model.NodeSet({0, 1, 2, 3}));
    model.Put(schema::Model_nodeSets(), "My Part_Top Set", model.NodeSet({5, 6, 7, 9}));
    model.Put(schema::Model_nodeSets(), "All", model.NodeSet({0, 1, 2, 3, 4, 5, 7, 9, 10, 11}));
    model.Put(schema::Model_nodeSets(), "None", model.NodeSet(Ints{}));
    model.Put(schema::Model_otherNodeSets(), "P-1_Hidden", model.NodeSet({4}));
    model.Put(schema::Model_elementSets(), "P-1_Top", model.ElementSet({0, 1}));
    model.Put(schema::Model_elementSets(), "Skin", model.ElementSet({0, 1, 2, 3, 4}));
    model.Put(schema::Model_otherElementSets(), "Picked", model.ElementSet({2}));

    for (char const* const name : {"P-1", "My Part"}) {
        bool const first = name[0] == 'P';
        KOVSimPosition const instance = model.Record(schema::Instance());
        instance.SetName(name);
        instance.GetDataRecord().SetString(0, first ? "Plate" : "Rib");
        instance.SetPosition(schema::Instance_nodes(),
                             model.NodeSet(first ? Ints{0, 1, 2, 3, 4} : Ints{5, 6, 7, 8, 9}));
        instance.SetPosition(schema::Instance_elements(),
                             model.ElementSet(first ? Ints{0, 1} : Ints{2}));
        model.Put(schema::Model_instances(), name, instance);
    }

    KOVSimCollection faces = model.Symbols({"S1", "S2", "SPOS"}, schema::FaceCollection());
    KOVSimCollection edges = model.Symbols({"E1", "E2"}, schema::EdgeCollection());
    auto const one = [](KOVSimCollection& of, int index) {
        return of.CreateCSet(&index, 1, false);
    };
    KOVSimPosition const surface = model.Record(schema::Surface());
    surface.SetPosition(schema::Region_elementsFacesCluster(),
                        model.Relation({{model.ElementSet({0, 1}).GetCSet(), one(faces, 2)},
                                        {model.ElementSet({2}).GetCSet(), one(faces, 0)},
                                        {model.ElementSet({3}).GetCSet(), one(faces, 2)}},
                                       schema::ElementFaces()));
    surface.SetPosition(
        schema::Region_elementsEdgesCluster(),
        model.Relation({{model.ElementSet({1}).GetCSet(), one(edges, 1)}}, schema::ElementEdges()));
    surface.SetPosition(schema::Region_elementsCluster(), model.ElementSet({4}));
    model.Put(schema::Model_regions(), "P-1_Top", surface);
    KOVSimPosition const bolt = model.Record(schema::Surface());
    bolt.SetPosition(schema::Region_nodesCluster(), model.NodeSet({8, 9}));
    model.Put(schema::Model_regions(), "Bolt", bolt);
    model.Put(schema::Model_regions(), "Bare", model.Record(schema::Surface()));

    KOVSimPosition const orientation = model.Record(schema::Orientation());
    double const geometry[] = {0, 0, 0.5, 0, 0, 1e-6, 1, 0, 0, 3, 45};
    orientation.GetDataRecord().SetInt(0, 1);
    orientation.GetDataRecord().SetDouble(1, geometry, 11);
    double const axis[] = {0, 0, 0.5, 0, 0, 1e-6};
    int at = 0;
    for (int const member : {schema::Orientation_axisPointA(), schema::Orientation_axisPointB()}) {
        KOVSimPosition const point = model.Record(schema::AxisPoint());
        point.GetDataRecord().SetDouble(0, axis + at, 3);
        orientation.SetPosition(member, point);
        at += 3;
    }
    model.Put(schema::Model_orientationsByName(), "P-1_Ori", orientation);
    model.Put(schema::Model_orientationsByName(), "Blank", model.Record(schema::Orientation()));
    model.Commit();
}

}  // namespace kov::test
