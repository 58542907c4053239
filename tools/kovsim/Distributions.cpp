#include "Distributions.h"

#include <charconv>
#include <limits>
#include <vector>

#include "Failure.h"
#include "Interrupt.h"
#include "KOVSimCSetIterator.h"
#include "Names.h"
#include "Nearest.h"

namespace kov::tool {
namespace {

int Lowest(KOVSimCSet const& elements) { return static_cast<int>(elements.Bounds()); }

std::string Number(double number) {
    char text[32];
    auto const end = std::to_chars(text, text + sizeof text, number).ptr;
    return {text, end};
}

// Calls f(block) for pieces of a set, ascending, each small enough for a block of numbers.
template <class F>
void ForBlocks(KOVSimCSet const& elements, KOVSimCollection const& collection, F&& f) {
    auto const most = static_cast<std::size_t>(RowsInBlock(1));
    std::vector<int> members;
    KOVSimCSetIterator at(elements);
    at.First();
    while (!at.IsDone()) {
        ThrowIfInterrupted();
        members.clear();
        for (; !at.IsDone() && members.size() < most; at.Next()) {
            members.push_back(at.CurrentValue());
        }
        f(collection.CreateVolatileCSet(members.data(), static_cast<int>(members.size()), false));
    }
}

}  // namespace

std::string UnknownDistribution(Scopes& scopes, Scope& scope, ScopedName const& name) {
    if (NamedElsewhere const* const found = scope.distributionsElsewhere.Find(name.text)) {
        return "distribution '" + Shown(found->name) + "' of line " + std::to_string(found->line) +
               " gives no values to elements; expected a distribution with LOCATION=ELEMENT";
    }
    NearestSearch search(name.text);
    for (Scope const& other : scopes.All()) {
        if (&other != &scope && !scope.IsRoot()) continue;
        for (NamedDistribution const& distribution : other.distributions.All()) {
            search.Look(other.IsRoot() || &other == &scope ? distribution.name
                                                           : other.name + "." + distribution.name);
        }
    }
    return "'" + Shown(name.text) + "' is no distribution; expected a distribution of " +
           (scope.IsRoot() ? "the deck" : "instance '" + Shown(scope.name) + "'") +
           NearestHint(search.Names());
}

std::string Distributions::Element(int ordinal) const {
    Scope const& scope = m_scopes.OfElement(ordinal);
    return ShownLabel(scope, kElementEntity, scope.elementLabels.LabelOf(ordinal));
}

void Distributions::CheckCovers(NamedDistribution const& distribution, KOVSimCSet const& elements,
                                std::string const& purpose, std::string const& path, int line,
                                bool positive) const {
    auto const fail = [&](int element, std::string const& what) {
        throw DeckError(path, line,
                        purpose + ": distribution '" + Shown(distribution.name) + "' gives " +
                            Element(element) + " " + what);
    };
    KOVSimCSet const others = elements - distribution.elements;
    if (!others.IsEmpty()) {
        if (!distribution.HasDefault()) {
            fail(Lowest(others), "no value, and has no default; expected a value for each element");
        }
        double const value = distribution.defaults.front();
        if (positive && !(value > 0)) {
            fail(Lowest(others), "its default " + Number(value) + "; expected values above 0");
        }
    }
    if (!positive || distribution.lowest > 0 || distribution.elements.IsEmpty()) return;
    std::vector<double> values;
    ForBlocks(elements.Intersection(distribution.elements), m_model.ElementCollection(),
              [&](KOVSimCSet const& block) {
                  values.resize(static_cast<std::size_t>(block.Size()));
                  ReadRows(distribution, block, values.data());
                  for (int i = 0; i < block.Size(); ++i) {
                      double const value = values[static_cast<std::size_t>(i)];
                      if (value > 0) continue;
                      fail(block[i], "the value " + Number(value) + "; expected values above 0");
                  }
              });
}

std::string Distributions::Vanishing(NamedDistribution const& distribution,
                                     KOVSimCSet const& elements, double factor) const {
    bool const values = !distribution.elements.IsEmpty() && !(distribution.lowest * factor > 0);
    bool const rest = distribution.HasDefault() && !(distribution.defaults.front() * factor > 0);
    KOVSimCSet const others = rest ? elements - distribution.elements : KOVSimCSet();
    if (!others.IsEmpty()) return Element(Lowest(others));
    if (!values) return "";
    std::string found;
    std::vector<double> numbers;
    ForBlocks(elements.Intersection(distribution.elements), m_model.ElementCollection(),
              [&](KOVSimCSet const& block) {
                  numbers.resize(static_cast<std::size_t>(block.Size()));
                  ReadRows(distribution, block, numbers.data());
                  for (int i = 0; i < block.Size() && found.empty(); ++i) {
                      double const number = numbers[static_cast<std::size_t>(i)];
                      if (!(number * factor > 0)) found = Element(block[i]);
                  }
              });
    return found;
}

KOVSimPosition Distributions::ScaledField(NamedDistribution const& distribution, double factor,
                                          KOVSimCSet const& elements) {
    TableField const made = MakeTableField(m_model.Document(), 1);
    std::vector<double> values;
    ForBlocks(elements.Intersection(distribution.elements), m_model.ElementCollection(),
              [&](KOVSimCSet const& block) {
                  values.resize(static_cast<std::size_t>(block.Size()));
                  ReadRows(distribution, block, values.data());
                  for (double& value : values) value *= factor;
                  WriteRows(made, block, 1, values.data());
              });
    SetDefaults(made, distribution.words, distribution.HasDefault(),
                {factor * distribution.defaults.front()});
    return made.field;
}

}  // namespace kov::tool
