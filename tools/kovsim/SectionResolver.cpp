#include "SectionResolver.h"

#include <unordered_map>

#include "Distributions.h"
#include "Interrupt.h"
#include "Names.h"
#include "Nearest.h"

namespace kov::tool {
namespace {

// What a name may stand for, said of its scope.
std::string Of(Scope const& scope) {
    return scope.IsRoot() ? "the deck" : "instance '" + Shown(scope.name) + "'";
}

template <class Objects>
void LookAt(NearestSearch& search, Objects const& objects) {
    for (auto const& object : objects) search.Look(object.name);
}

}  // namespace

ElementMarks SectionResolver::Resolve(int elements) {
    ResolveMaterials();
    for (Mention& mention : m_table.orientationNames.All()) ResolveOrientation(mention);
    for (Mention& mention : m_table.thicknessNames.All()) ResolveThickness(mention);
    for (Mention& mention : m_table.angleNames.All()) ResolveAngle(mention);
    ElementMarks marks(elements);
    std::unordered_map<NamedSet const*, SectionEntry const*> bySet;
    long done = 0;
    for (SectionEntry& section : m_table.sections) {
        if (++done % 1000 == 0) ThrowIfInterrupted();
        ResolveSet(section);
        Take(section, marks);
        // A set without elements takes none twice, but the section is known by its name.
        auto const [first, isNew] = bySet.try_emplace(section.set, &section);
        if (isNew) continue;
        m_table.files.Fail(section.at, "element set " +
                                           ShownIn(*section.setScope, section.set->name) +
                                           " has a section already, of " +
                                           m_table.files.Shown(first->second->at, section.at) +
                                           "; expected one section for each set");
    }
    return marks;
}

void SectionResolver::ResolveMaterials() {
    for (NamedMaterial const& material : m_table.materials.All()) {
        if (material.defined.line != 0) continue;
        NearestSearch search(material.name);
        for (NamedMaterial const& other : m_table.materials.All()) {
            if (other.defined.line != 0) search.Look(other.name);
        }
        m_table.files.Fail(material.first, "material '" + Shown(material.name) +
                                               "' is not defined; expected a material of the deck" +
                                               NearestHint(search.Names()));
    }
}

NamedOrientation const* SectionResolver::FindOrientation(Mention const& mention) {
    return FindNamed(m_scopes, *mention.scope, &Scope::orientations, mention.name, "orientation",
                     m_table.files.Path(mention.first), mention.first.line);
}

NamedDistribution const* SectionResolver::FindDistribution(Mention const& mention) {
    return FindNamed(m_scopes, *mention.scope, &Scope::distributions, mention.name, "distribution",
                     m_table.files.Path(mention.first), mention.first.line);
}

void SectionResolver::ResolveOrientation(Mention& mention) {
    mention.orientation = FindOrientation(mention);
    if (mention.orientation != nullptr) return;
    NearestSearch search(mention.name.text);
    LookAt(search, mention.scope->orientations.All());
    m_table.files.Fail(mention.first, "orientation '" + Shown(mention.name.text) +
                                          "' is not defined; expected an orientation of " +
                                          Of(*mention.scope) + NearestHint(search.Names()));
}

void SectionResolver::ResolveThickness(Mention& mention) {
    mention.distribution = FindDistribution(mention);
    if (mention.distribution == nullptr) FailThickness(mention);
    if (mention.distribution->IsOneNumber()) return;
    m_table.files.Fail(mention.first, "distribution '" + Shown(mention.name.text) +
                                          "' gives several numbers; expected one for a thickness");
}

// A parameter takes a distribution alone, the line of a layer a number as well.
void SectionResolver::FailThickness(Mention const& mention) {
    for (SectionEntry const& section : m_table.sections) {
        if (section.at != mention.first) continue;
        m_table.files.Fail(mention.first,
                           UnknownDistribution(m_scopes, *mention.scope, mention.name));
    }
    NearestSearch search(mention.name.text);
    LookAt(search, mention.scope->distributions.All());
    m_table.files.Fail(mention.first,
                       "'" + Shown(mention.name.text) +
                           "' is no number; expected a thickness, or a distribution of " +
                           Of(*mention.scope) + NearestHint(search.Names()));
}

void SectionResolver::ResolveAngle(Mention& mention) {
    std::string const name = "'" + Shown(mention.name.text) + "'";
    mention.orientation = FindOrientation(mention);
    mention.distribution = FindDistribution(mention);
    if (mention.orientation != nullptr && mention.distribution != nullptr) {
        m_table.files.Fail(mention.first,
                           name +
                               " is an orientation and a distribution; expected names that "
                               "differ");
    }
    if (mention.orientation != nullptr) return;
    if (mention.distribution == nullptr) {
        NearestSearch search(mention.name.text);
        LookAt(search, mention.scope->orientations.All());
        LookAt(search, mention.scope->distributions.All());
        m_table.files.Fail(mention.first,
                           name +
                               " is no number; expected an angle in degrees, or an orientation or "
                               "a distribution of " +
                               Of(*mention.scope) + NearestHint(search.Names()));
    }
    if (mention.distribution->IsOneNumber()) return;
    m_table.files.Fail(mention.first, "distribution " + name +
                                          " gives several numbers; expected one for an angle");
}

void SectionResolver::ResolveSet(SectionEntry& section) {
    Scope& scope = *section.scope;
    Reference const found = FindReference(m_scopes, scope, kElementEntity, section.elements,
                                          m_table.files.Path(section.at), section.at.line);
    if (found.set == nullptr && found.ordinal != LabelTable::None) {
        m_table.files.Fail(section.at, "'" + Shown(section.elements.text) +
                                           "' is a single element; expected an element set");
    }
    if (found.set == nullptr) {
        m_table.files.Fail(section.at,
                           UnknownSet(m_scopes, scope, kElementEntity, section.elements));
    }
    section.set = found.set;
    section.setScope = found.scope;
    section.elements = {};
}

// A bit for each element: the time goes by the members of the sections alone. A set may name one of
// its members twice.
void SectionResolver::Take(SectionEntry& section, ElementMarks& marks) {
    int twice = -1;
    section.set->members.ForRuns([&](int first, int count, int stride) {
        if (twice < 0) twice = marks.FirstMarked(first, count, stride);
    });
    if (twice >= 0) FailTwice(section, twice);
    section.set->members.ForRuns(
        [&](int first, int count, int stride) { marks.Mark(first, count, stride); });
}

void SectionResolver::FailTwice(SectionEntry const& section, int element) {
    SectionEntry const* before = nullptr;
    for (SectionEntry const& other : m_table.sections) {
        if (&other == &section || before != nullptr) break;
        other.set->members.ForRuns([&](int first, int count, int stride) {
            int const behind = element - first;
            if (behind >= 0 && behind % stride == 0 && behind / stride < count) before = &other;
        });
    }
    Scope const& scope = m_scopes.OfElement(element);
    std::string text = ShownLabel(scope, kElementEntity, scope.elementLabels.LabelOf(element)) +
                       " is in two sections";
    if (before != nullptr) {
        text += ", first in that of " + m_table.files.Shown(before->at, section.at);
    }
    m_table.files.Fail(section.at, text + "; expected one");
}

}  // namespace kov::tool
