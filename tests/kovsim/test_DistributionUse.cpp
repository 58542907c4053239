// What sections ask of distributions: names, coverage, and values times a factor.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "DistributionFixture.h"
#include "Distributions.h"
#include "Failure.h"
#include "LayerShares.h"

namespace kov::test {
namespace {

using tool::NamedDistribution;
using tool::ScopedName;
using Ints = std::vector<int>;
using Numbers = std::vector<double>;

ScopedName Name(std::string const& text) {
    std::string line = text + "\n";
    tool::FieldScanner fields(line.c_str(), line.c_str() + line.size());
    int number = 0;
    static_cast<void>(fields.ReadInt(number));
    ScopedName name;
    EXPECT_TRUE(name.Read(fields));
    return name;
}

NamedDistribution const* FindDistribution(tool::Scopes& scopes, tool::Scope& scope,
                                          tool::ScopedName const& name, std::string const& path,
                                          int line) {
    return tool::FindNamed(scopes, scope, &tool::Scope::distributions, name, "distribution", path,
                           line);
}

// A mesh of 1000 elements of instance I, the labels 1 to 1000, and its distributions.
class DistributionUse : public DocumentTest {
  protected:
    void SetUp() override {
        DocumentTest::SetUp();
        transaction = std::make_unique<KOVSimTransaction>(Document().ContextID());
        model = std::make_unique<tool::ModelWriter>(Document(), *transaction);
        instance = &scopes.MakeInstance("I");
        AddElements(1000);
    }
    void TearDown() override {
        transaction = nullptr;
        DocumentTest::TearDown();
    }
    void AddElements(int count) {
        for (int i = 0; i < count; ++i) {
            int const ordinal = model->NewElement();
            instance->elementLabels.Insert(ordinal + 1, ordinal);
        }
        instance->elements = -1;
        static_cast<void>(model->ElementCollection());
    }
    void CommitAndReopen() {
        transaction->Commit();
        transaction = nullptr;
        Reopen();
    }

    KOVSimCSet Set(Ints const& elements) {
        return model->ElementCollection().CreateVolatileCSet(
            elements.data(), static_cast<int>(elements.size()), false);
    }
    KOVSimCSet Range(int first, int count) {
        return model->ElementCollection().CreateVolatileCSetStrided(first, count, 1, 1);
    }
    NamedDistribution& Make(std::string const& name, tool::Scope& scope) {
        NamedDistribution& field = scope.distributions.Make(name);
        static_cast<tool::TableField&>(field) = tool::MakeTableField(Document(), 1);
        field.words = "LENGTH";
        field.defaults = {0};
        return field;
    }
    NamedDistribution& Make(KOVSimCSet const& elements, Numbers const& values) {
        NamedDistribution& field = Make("D" + std::to_string(++made), *instance);
        tool::WriteRows(field, elements, 1, values.data());
        field.elements = elements;
        field.lowest = *std::min_element(values.begin(), values.end());
        return field;
    }
    static void Default(NamedDistribution& distribution, double value) {
        distribution.defaults = {value};
        distribution.defaultLine = 3;
    }
    tool::Distributions Used() { return {*model, scopes}; }
    std::string Fault(NamedDistribution const& distribution, KOVSimCSet const& elements,
                      bool positive) {
        try {
            Used().CheckCovers(distribution, elements, "shell section of 'E'", "deck.inp", 7,
                               positive);
        } catch (tool::DeckError const& error) {
            EXPECT_EQ(error.Line(), 7);
            return error.what();
        }
        return "";
    }
    std::string FindFault(std::string const& name) {
        try {
            FindDistribution(scopes, scopes.Root(), Name(name), "deck.inp", 9);
        } catch (tool::DeckError const& error) {
            return error.what();
        }
        return "";
    }

    tool::Scopes scopes;
    std::unique_ptr<KOVSimTransaction> transaction;
    std::unique_ptr<tool::ModelWriter> model;
    tool::Scope* instance = nullptr;
    int made = 0;
};
KOV_DOCUMENT_TESTS(DistributionUse);

TEST_P(DistributionUse, AScopeFindsItsOwnWhateverTheCase) {
    NamedDistribution const& own = Make("Thick", *instance);
    EXPECT_EQ(FindDistribution(scopes, *instance, Name("tHICK"), "", 1), &own);
    EXPECT_EQ(FindDistribution(scopes, *instance, Name("\"Thick\""), "", 1), &own);
    EXPECT_EQ(FindDistribution(scopes, *instance, Name("I.Thick"), "", 1), nullptr);
    EXPECT_EQ(FindDistribution(scopes, scopes.Root(), Name("Thick"), "", 1), nullptr);
}

TEST_P(DistributionUse, TheRootFindsThoseOfInstances) {
    NamedDistribution const& own = Make("Thick", *instance);
    NamedDistribution const& dotted = Make("I.Other", scopes.Root());
    EXPECT_EQ(FindDistribution(scopes, scopes.Root(), Name("i.thick"), "", 1), &own);
    EXPECT_EQ(FindDistribution(scopes, scopes.Root(), Name("I.\"Thick\""), "", 1), &own);
    EXPECT_EQ(FindDistribution(scopes, scopes.Root(), Name("i.other"), "", 1), &dotted);
    EXPECT_EQ(FindDistribution(scopes, scopes.Root(), Name("J.Thick"), "", 1), nullptr);
}

TEST_P(DistributionUse, ANameForTwoAsksForQuotes) {
    NamedDistribution const& own = Make("Thick", *instance);
    NamedDistribution const& dotted = Make("I.Thick", scopes.Root());
    EXPECT_EQ(FindFault("i.thick"),
              "deck.inp:9: 'i.thick' is distribution 'I.Thick' and distribution 'Thick' of "
              "instance 'I'; expected quotes, as in \"I.Thick\" or \"I\".\"Thick\"");
    EXPECT_EQ(FindDistribution(scopes, scopes.Root(), Name("\"I.Thick\""), "", 1), &dotted);
    EXPECT_EQ(FindDistribution(scopes, scopes.Root(), Name("\"I\".\"Thick\""), "", 1), &own);
}

TEST_P(DistributionUse, AnUnknownNameHasHints) {
    Make("Thickness", *instance);
    Make("Angles", scopes.Root());
    EXPECT_EQ(UnknownDistribution(scopes, scopes.Root(), Name("Angels")),
              "'Angels' is no distribution; expected a distribution of the deck; did you mean "
              "'Angles'?");
    EXPECT_EQ(UnknownDistribution(scopes, scopes.Root(), Name("I.Thicknes")),
              "'I.Thicknes' is no distribution; expected a distribution of the deck; did you mean "
              "'I.Thickness'?");
    EXPECT_EQ(UnknownDistribution(scopes, *instance, Name("thicknes")),
              "'thicknes' is no distribution; expected a distribution of instance 'I'; did you "
              "mean 'Thickness'?");
    EXPECT_EQ(UnknownDistribution(scopes, *instance, Name("Angles")),
              "'Angles' is no distribution; expected a distribution of instance 'I'");
}

TEST_P(DistributionUse, ElementsWithValuesAreCovered) {
    NamedDistribution const& distribution = Make(Set({3, 5, 8}), {1, 2, 3});
    EXPECT_EQ(Fault(distribution, Set({3, 8}), true), "");
    EXPECT_EQ(Fault(distribution, Set({}), true), "");
}

TEST_P(DistributionUse, TheFirstElementWithoutValueIsNamed) {
    NamedDistribution& distribution = Make(Set({3, 5, 8}), {1, 2, 3});
    EXPECT_EQ(Fault(distribution, Set({3, 5, 6, 7}), true),
              "deck.inp:7: shell section of 'E': distribution 'D1' gives element 7 of instance 'I' "
              "no value, and has no default; expected a value for each element");
    EXPECT_EQ(Fault(distribution, Set({6}), false), Fault(distribution, Set({3, 6}), true));
    Default(distribution, 0.5);
    EXPECT_EQ(Fault(distribution, Set({3, 5, 6, 7}), true), "");
}

TEST_P(DistributionUse, ThicknessesAreAboveZero) {
    NamedDistribution& distribution = Make(Set({3, 5, 8}), {1, -0.5, 0});
    EXPECT_EQ(Fault(distribution, Set({3, 5, 8}), true),
              "deck.inp:7: shell section of 'E': distribution 'D1' gives element 6 of instance 'I' "
              "the value -0.5; expected values above 0");
    EXPECT_EQ(Fault(distribution, Set({3, 8}), true),
              "deck.inp:7: shell section of 'E': distribution 'D1' gives element 9 of instance 'I' "
              "the value 0; expected values above 0");
    EXPECT_EQ(Fault(distribution, Set({3}), true), "");
    EXPECT_EQ(Fault(distribution, Set({3, 5, 8}), false), "");
}

TEST_P(DistributionUse, ADefaultThatElementsTakeIsAboveZeroToo) {
    NamedDistribution& distribution = Make(Set({3}), {1});
    Default(distribution, 0);
    EXPECT_EQ(Fault(distribution, Set({3, 4}), true),
              "deck.inp:7: shell section of 'E': distribution 'D1' gives element 5 of instance 'I' "
              "its default 0; expected values above 0");
    EXPECT_EQ(Fault(distribution, Set({3, 4}), false), "");
    EXPECT_EQ(Fault(distribution, Set({3}), true), "");
}

TEST_P(DistributionUse, ScaledFieldsHoldValuesTimesTheFactor) {
    NamedDistribution& distribution = Make(Set({3, 5, 8}), {1, 2, 3});
    Default(distribution, 4);
    KOVSimPosition const field = Used().ScaledField(distribution, 0.25, Set({2, 3, 8}));
    CommitAndReopen();
    KOVSimPosition const stored = Again(field);
    EXPECT_EQ(Stored(stored),
              (StoredField{{{3, {0.25}}, {8, {0.75}}}, {1}, 1, "LENGTH", {"LENGTH"}}));
    Numbers const read = ReadByElement(Document(), stored);
    EXPECT_EQ(Numbers(read.begin(), read.begin() + 9), (Numbers{1, 1, 1, .25, 1, 1, 1, 1, .75}));
    EXPECT_TRUE(stored.Name(-1).IsEmpty());
    EXPECT_TRUE(Document().GetModel().GetMap(schema::Model_distributions()).Find("D1").IsNull());
}

TEST_P(DistributionUse, AScaledFieldOfNoElementsIsItsDefault) {
    NamedDistribution const& distribution = Make(Set({3}), {1});
    KOVSimPosition const field = Used().ScaledField(distribution, 2, Set({}));
    EXPECT_EQ(Stored(field), (StoredField{{}, {0}, 0, "LENGTH", {"LENGTH"}}));
}

TEST_P(DistributionUse, SharesThatVanishAreFound) {
    NamedDistribution& distribution = Make(Set({3, 5, 8}), {1, 1e-300, 2});
    EXPECT_EQ(Used().Vanishing(distribution, Set({3, 5, 8}), 1e-20), "");
    EXPECT_EQ(Used().Vanishing(distribution, Set({3, 5, 8}), 1e-30), "element 6 of instance 'I'");
    EXPECT_EQ(Used().Vanishing(distribution, Set({3, 8}), 1e-30), "");
    Default(distribution, 1e-301);
    EXPECT_EQ(Used().Vanishing(distribution, Set({3, 8}), 1e-30), "");
    EXPECT_EQ(Used().Vanishing(distribution, Set({3, 4, 8}), 1e-30), "element 5 of instance 'I'");
    EXPECT_EQ(Used().Vanishing(distribution, Set({}), 1e-30), "");
}

TEST_P(DistributionUse, WorksInBlocks) {
    int const elements = 2 * tool::RowsInBlock(1) + 7;
    AddElements(elements - 1000);
    Numbers values;
    for (int i = 0; i < elements; ++i) values.push_back(1 + i);
    values.back() = -1;
    NamedDistribution const& distribution = Make(Range(0, elements), values);
    EXPECT_EQ(Fault(distribution, Range(0, elements - 1), true), "");
    EXPECT_EQ(Fault(distribution, Range(0, elements), true),
              "deck.inp:7: shell section of 'E': distribution 'D1' gives element " +
                  std::to_string(elements) +
                  " of instance 'I' the value -1; expected values above 0");
    KOVSimPosition const field = Used().ScaledField(distribution, 2, Range(0, elements));
    CommitAndReopen();
    for (double& value : values) value *= 2;
    EXPECT_EQ(ReadByElement(Document(), Again(field)), values);
}

TEST_P(DistributionUse, FieldsOfSharesAreMadeInTheOrderOfTheLayers) {
    NamedDistribution& second = Make(Range(0, 10), Numbers(10, 1.0));
    NamedDistribution& first = Make(Range(0, 20), Numbers(20, 1.0));
    tool::SectionTable table;
    std::vector<tool::NamedSet> sets(2);
    double const thicknesses[] = {3, 1, 3};
    for (NamedDistribution* const thickness : {&first, &second}) {
        std::size_t const number = table.sections.size();
        sets[number].stored = model->ElementCollection().CreateCSetStrided(0, 5, 1, 1);
        tool::SectionEntry& section = table.sections.emplace_back();
        section.composite = true;
        section.set = &sets[number];
        section.thicknessName =
            table.thicknessNames.Number(*instance, Name(thickness->name), {0, 1});
        table.thicknessNames.All().back().distribution = thickness;
        section.firstLayer = table.NextLayer();
        section.layerLines = 3;
        for (double const each : thicknesses) {
            tool::LayerEntry layer;
            layer.SetThickness(each);
            table.AddLayer(layer);
        }
    }
    tool::Distributions used = Used();
    tool::LayerShares shares;
    shares.Make(table, *model, used);
    std::vector<KOVSimPosition> fields;
    for (tool::SectionEntry const& section : table.sections) {
        for (int layer = 0; layer < 3; ++layer) {
            fields.push_back(shares.Field(table, section, layer, 7));
        }
    }
    EXPECT_EQ(fields[0].ID(), fields[2].ID());
    EXPECT_LT(fields[0].ID().data.minor, fields[1].ID().data.minor);
    EXPECT_LT(fields[1].ID().data.minor, fields[3].ID().data.minor);
    EXPECT_LT(fields[3].ID().data.minor, fields[4].ID().data.minor);
    transaction->Commit();
    transaction = nullptr;
}

}  // namespace
}  // namespace kov::test
