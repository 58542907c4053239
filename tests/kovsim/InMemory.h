// Decks translated into documents in memory, and what tests look at in them.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "DeckFile.h"
#include "DocumentReader.h"
#include "Failure.h"
#include "KOVObjDocument.h"
#include "KOVSimDSet.h"
#include "KOVSimDistribution.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVSrvElementConnectivity.h"
#include "KOVSrvNodalCoordinates.h"
#include "Names.h"
#include "Translation.h"
#include "zdm_ComponentSymbols.h"

namespace kov::test {

/// A deck named "deck.inp", with further files beside it.
class InMemory {
  public:
    explicit InMemory(std::string const& deck) { files.texts["deck.inp"] = deck; }

    InMemory& File(std::string const& name, std::string const& text) {
        files.texts[name] = text;
        return *this;
    }
    InMemory& Translate(tool::TranslationOptions options = {}) {
        document = KOVObjDocument::CreateInMemory();
        KOVSimTransaction transaction(document.ContextID());
        tool::Translation translation(files, document, transaction, std::move(options));
        summary = translation.Run("deck.inp");
        transaction.Commit();
        translation.WriteLayers();
        return *this;
    }
    /// The text of the error that the deck ends with; "" if it ends with none.
    std::string Error(tool::TranslationOptions options = {}) {
        try {
            Translate(std::move(options));
        } catch (tool::Failure const& failure) {
            return failure.what();
        }
        return "";
    }

    KOVObjMesh Mesh() const { return {document.GetMesh()}; }
    KOVSimCollection Nodes() const { return tool::CollectionAt(Mesh().GetNodeCollection()); }
    KOVSimCollection Elements() const { return tool::CollectionAt(Mesh().GetElementCollection()); }

    /// x, y, z of all nodes, by ordinal.
    std::vector<double> Coordinates() const {
        int const components[] = {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3};
        KOVSimCollection const collection = tool::CollectionAt(document.GetComponentCollection());
        KOVSimCollection const nodes = Nodes();
        std::vector<double> out(3 * static_cast<std::size_t>(nodes.Space()), -1.0);
        KOVSrvNodalCoordinates(Mesh().GetCoordinates(), 1000)
            .Read(nodes.CreateVolatileCSetStrided(0, nodes.Space(), 1, 1),
                  collection.CreateVolatileCSet(components, 3, false), out.data());
        return out;
    }
    /// The node ordinals of one element, which has `count` nodes.
    std::vector<int> NodesOf(int element, int count) const {
        KOVSimDSet const dset(Mesh().GetConnectivity());
        KOVSimDistribution const distribution(dset.GetRelationalDistributionID());
        KOVSimCollection const positions(distribution.Grid().Collections().ConstGet(1));
        std::vector<int> out(static_cast<std::size_t>(count), -1);
        KOVSrvElementConnectivity(Mesh().GetConnectivity(), 1000)
            .Read(Elements().CreateVolatileCSetStrided(element, 1, 1, 1),
                  positions.CreateVolatileCSetStrided(0, count, 1, 1), out.data());
        return out;
    }
    /// The members of each set in a map of the model, by name as it is stored.
    std::map<std::string, std::vector<int>> Sets(int map) const {
        std::map<std::string, std::vector<int>> sets;
        for (tool::DocumentSet const& set : tool::DocumentSets(document, map)) {
            std::vector<int>& members = sets[set.name];
            members.resize(static_cast<std::size_t>(set.set.Size()));
            set.set.Members(members.data());
        }
        return sets;
    }
    std::map<std::string, std::vector<int>> NodeSets() const {
        return Sets(schema::Model_nodeSets());
    }
    std::map<std::string, std::vector<int>> ElementSets() const {
        return Sets(schema::Model_elementSets());
    }
    /// The user label of each ordinal.
    std::vector<int> NodeLabels() const {
        return tool::LabelsByOrdinal(document, KOVObjLabelerNodes, Nodes().Space());
    }
    std::vector<int> ElementLabels() const {
        return tool::LabelsByOrdinal(document, KOVObjLabelerElements, Elements().Space());
    }

    tool::MemoryFiles files;
    KOVObjDocument document;
    tool::TranslationSummary summary;
};

}  // namespace kov::test
