#include "Scope.h"

#include "Names.h"

namespace kov::tool {

Scope* Scopes::FindInstance(std::string_view name) {
    auto const found = m_byName.find(LowerCase(name));
    return found == m_byName.end() ? nullptr : found->second;
}

Scope& Scopes::MakeInstance(std::string const& name) {
    Scope& scope = m_all.emplace_back(name, m_nodePool, m_elementPool);
    m_byName[LowerCase(name)] = &scope;
    return scope;
}

std::string ShownIn(Scope const& scope, std::string_view name) {
    std::string const text = "'" + Shown(name) + "'";
    return scope.IsRoot() ? text : text + " of instance '" + Shown(scope.name) + "'";
}

}  // namespace kov::tool
