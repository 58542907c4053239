// Steps through the parameters of a keyword line, each of the form `key=value` or `key`, and
// resolves the keys against a list of allowed names, which may be abbreviated.
#pragma once

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVString.h"

class KOV_EXPORT KOVSrvKeywordParameterReader {
  public:
    using Parameters = KOVSimArray<KOVString, KOVSimArrayClassPolicy<KOVString>>;

    /// `keys`: the allowed names in lower case, ending with a null pointer. Both arguments stay the
    /// caller's and outlive the reader.
    KOVSrvKeywordParameterReader(Parameters const& parameters, char const** keys);

    void First();
    bool IsDone() const;
    /// Does nothing when done.
    void Next();

    /// The allowed name that equals the text before the first `=` in lower case, or else the only
    /// one that begins with it. Empty if there is none or more than one. An empty key is an
    /// abbreviation of nothing.
    KOVString CurrentKey() const;

    /// The text behind the first `=`, as it was typed; empty without one.
    KOVString CurrentValueAsString() const;
    /// The same as a number; 0 without `=` or if it is no number. What stands behind it is ignored.
    double CurrentValueAsDouble() const;
    int CurrentValueAsInt() const;

  private:
    int m_index = 0;
    Parameters const* m_parameters;
    char const** m_keys;
};
