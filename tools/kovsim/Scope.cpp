#include "Scope.h"

#include <algorithm>

#include "Names.h"

namespace kov::tool {

NamedSet& NamedSurface::Members(int face, SetTable& sets) {
    if (face < 0) {
        if (members == nullptr) members = &sets.MakeUnnamed();
        return *members;
    }
    auto const at = std::lower_bound(faces.begin(), faces.end(), face,
                                     [](auto const& a, int b) { return a.first < b; });
    if (at != faces.end() && at->first == face) return *at->second;
    return *faces.insert(at, {face, &sets.MakeUnnamed()})->second;
}

Scope const& Scopes::OfElement(int ordinal) const {
    for (Scope const& scope : m_all) {
        bool const begun = !scope.IsRoot() && ordinal >= scope.firstElement;
        if (begun && (scope.elements < 0 || ordinal - scope.firstElement < scope.elements)) {
            return scope;
        }
    }
    return m_all.front();
}

Scope* Scopes::FindInstance(std::string_view name) {
    auto const found = m_byName.find(LowerCase(name));
    return found == m_byName.end() ? nullptr : found->second;
}

Scope& Scopes::MakeInstance(std::string const& name) {
    Scope& scope = m_all.emplace_back(name, m_nodePool, m_elementPool);
    m_byName[LowerCase(name)] = &scope;
    m_longestInstance = std::max(m_longestInstance, name.size());
    return scope;
}

std::string ShownLabel(Scope const& scope, Entity const& entity, int label) {
    std::string const text = std::string(entity.name) + " " + std::to_string(label);
    return scope.IsRoot() ? text : text + " of instance '" + Shown(scope.name) + "'";
}

std::string ShownIn(Scope const& scope, std::string_view name) {
    std::string const text = "'" + Shown(name) + "'";
    return scope.IsRoot() ? text : text + " of instance '" + Shown(scope.name) + "'";
}

}  // namespace kov::tool
