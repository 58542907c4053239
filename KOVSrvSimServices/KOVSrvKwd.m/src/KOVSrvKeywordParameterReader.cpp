#include "KOVSrvKeywordParameterReader.h"

#include "KOVSrvKeywordNumbers.h"

namespace {

KOVString KeyOf(KOVString const& parameter) {
    int const equals = parameter.FindPosition("=", 0);
    return equals == -1 ? parameter : parameter.SubString(0, equals);
}

}  // namespace

KOVSrvKeywordParameterReader::KOVSrvKeywordParameterReader(Parameters const& parameters,
                                                           char const** keys)
    : m_parameters(&parameters), m_keys(keys) {}

void KOVSrvKeywordParameterReader::First() { m_index = 0; }

bool KOVSrvKeywordParameterReader::IsDone() const { return m_index == m_parameters->Size(); }

void KOVSrvKeywordParameterReader::Next() {
    if (!IsDone()) ++m_index;
}

KOVString KOVSrvKeywordParameterReader::CurrentKey() const {
    KOVString key = KeyOf(m_parameters->ConstGet(m_index));
    key.ASCIIToLower();
    KOVString found;
    int hits = 0;
    for (char const** name = m_keys; *name; ++name) {
        KOVString const allowed(*name);
        if (allowed == key) return allowed;
        if (allowed.FindPosition(key, 0) != 0) continue;
        ++hits;
        found = allowed;
    }
    return hits == 1 ? found : KOVString();
}

KOVString KOVSrvKeywordParameterReader::CurrentValueAsString() const {
    KOVString const& parameter = m_parameters->ConstGet(m_index);
    int const equals = parameter.FindPosition("=", 0);
    if (equals == -1) return KOVString();
    return parameter.SubString(equals + 1, parameter.GetLengthInChar() - equals - 1);
}

double KOVSrvKeywordParameterReader::CurrentValueAsDouble() const {
    KOVString const value = CurrentValueAsString();
    char const* end = nullptr;
    return kov::keyword::ToDouble(value.TextOrEmpty(), end);
}

int KOVSrvKeywordParameterReader::CurrentValueAsInt() const {
    KOVString const value = CurrentValueAsString();
    char const* end = nullptr;
    return kov::keyword::ToInt(value.TextOrEmpty(), end);
}
