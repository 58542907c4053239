// ModelWriter: puts nodes and elements into a document in blocks, so that a mesh of any size passes
// through bounded memory.
//
// Ordinals are given out densely, in the order of the calls. Everything happens in one transaction
// of the caller's; after Finish() the caller commits.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "ElementTypes.h"
#include "KOVObjDocument.h"
#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "KOVSimTransaction.h"
#include "KOVSrvElementConnectivity.h"
#include "KOVSrvNodalCoordinates.h"
#include "Scope.h"

namespace kov::tool {

/// The elements of one type, while they are written.
struct TypeElements {
    ElementType const* type = nullptr;
    KOVSimPosition specification;
    KOVSimCSetID positions;     ///< the connectivity positions 0 to nodes - 1
    std::vector<int> ordinals;  ///< of elements not yet in the document, ascending
    std::vector<int> nodes;     ///< their node ordinals, `type->nodes` for each
    SetMembers members;         ///< all elements of the type
    int count = 0;
};

class ModelWriter {
  public:
    /// A block of so many nodes or elements goes to the document at once.
    static constexpr int kBlock = 100'000;

    ModelWriter(KOVObjDocument const& document, KOVSimTransaction& transaction);
    KOVSimTransaction& Transaction() { return m_transaction; }

    /// Adds a node and gives its ordinal. `xyz`: 3 numbers, in the model's length unit.
    int AddNode(double const* xyz) {
        m_coordinates.insert(m_coordinates.end(), xyz, xyz + 3);
        int const ordinal = m_nodes++;
        if (m_nodes - m_writtenNodes == kBlock) WriteNodes();
        return ordinal;
    }
    /// The coordinates of `count` nodes, in any order, none twice: `out` holds 3 numbers for each.
    void ReadNodes(int const* ordinals, int count, double* out);
    int NodeCount() const { return m_nodes; }

    /// The elements from here on are of that type.
    void BeginElements(ElementType const& type);
    /// A new element's ordinal; its nodes may follow later.
    int NewElement() { return m_elements++; }
    ElementType const& TypeOf(int ordinal) const { return *SpanOf(ordinal)->type; }
    /// True if `is(type)` is true for a type of the model.
    template <class Is>
    bool AnyType(Is&& is) const {
        return std::any_of(m_types.begin(), m_types.end(),
                           [&is](TypeElements const& elements) { return is(*elements.type); });
    }
    /// The first of the elements of a run whose type `is` accepts; -1 if there is none.
    template <class Is>
    int FirstElement(OrdinalRun const& run, Is&& is) const;
    int ElementCount() const { return m_elements; }
    /// The elements of a type; the element specification is made at the first call.
    TypeElements& Elements(ElementType const& type);
    /// Gives an element its nodes: `type.nodes` ordinals of nodes. Once for each element.
    void SetNodes(TypeElements& elements, int ordinal, int const* nodes);
    /// Calls f(nodes, count) with the nodes of all elements of a set, in pieces: each piece
    /// ascending, none twice in it. All elements have their nodes.
    void ForNodesOf(SetMembers const& elements, std::function<void(int const*, int)> const& f);
    std::deque<TypeElements> const& Types() const { return m_types; }

    /// The collections, as large as the ordinals given out so far ask for.
    KOVSimCollection& NodeCollection();
    KOVSimCollection& ElementCollection();
    KOVSimCollection& Collection(Entity const& entity) {
        return &entity == &kNodeEntity ? NodeCollection() : ElementCollection();
    }

    KOVObjDocument const& Document() const { return m_document; }

    /// Writes what is left of the mesh, and the element specification assignment. `heading` may be
    /// empty.
    void Finish(std::string const& heading);

  private:
    // Elements of one type that follow each other, up to the next span.
    struct TypeSpan {
        int first;
        ElementType const* type;
    };
    TypeSpan const* SpanOf(int ordinal) const;

    void ReadElementNodes(std::vector<int>& ordinals,
                          std::function<void(int const*, int)> const& f);
    void WriteNodes();
    void WriteElements(TypeElements& elements);
    void WriteAllElements();
    void WriteAssignment();

    KOVObjDocument m_document;
    KOVSimTransaction& m_transaction;
    KOVObjMesh m_mesh;
    KOVSimCollection m_nodeCollection;
    KOVSimCollection m_elementCollection;
    KOVSimCollection m_positionCollection;
    KOVSimCSetID m_components;
    KOVSrvNodalCoordinates m_nodalCoordinates;
    KOVSrvElementConnectivity m_connectivity;

    std::vector<double> m_coordinates;  ///< of the nodes from m_writtenNodes on
    int m_writtenNodes = 0;
    int m_nodes = 0;
    int m_elements = 0;
    std::deque<TypeElements> m_types;
    std::vector<TypeSpan> m_typeSpans;  ///< ascending
    std::size_t m_pending = 0;          ///< node ordinals that wait, over all types
};

template <class Is>
int ModelWriter::FirstElement(OrdinalRun const& run, Is&& is) const {
    long long const last = run.first + static_cast<long long>(run.count - 1) * run.stride;
    TypeSpan const* const end = m_typeSpans.data() + m_typeSpans.size();
    for (TypeSpan const* span = SpanOf(run.first); span != end && span->first <= last; ++span) {
        if (!is(*span->type)) continue;
        long long const steps =
            span->first <= run.first
                ? 0
                : (static_cast<long long>(span->first) - run.first + run.stride - 1) / run.stride;
        long long const element = run.first + steps * run.stride;
        if (element <= last && (span + 1 == end || element < span[1].first)) {
            return static_cast<int>(element);
        }
    }
    return -1;
}

}  // namespace kov::tool
