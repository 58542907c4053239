// KOVSimDataRecord: a handle on the numbered fields of one object. A `Get` of an unset field, or of
// one that holds another kind of value, leaves the caller's variable as it was: preset a default
// before the call. Setting a field replaces whatever it held. Reals keep every bit, not-a-number
// and negative zero included.
#pragma once

#include "KOVExport.h"
#include "KOVSimPosition.h"

class KOV_EXPORT KOVSimDataRecord {
  public:
    KOVSimDataRecord() = default;
    explicit KOVSimDataRecord(KOVSimPosition const& position) : m_position(position) {}

    KOVSimPosition Pos() const { return m_position; }
    KOVSimDynamicID ID() const { return m_position.ID(); }

    void SetInt(int field, int value) const;
    void GetInt(int field, int& value) const;
    void SetDouble(int field, double value) const;
    /// A real array field of `n` values, copied.
    void SetDouble(int field, double const* values, int n) const;
    /// The first value of a real field.
    void GetDouble(int field, double& value) const;
    /// The first `n` values of a real array field; entries behind the stored ones stay as they
    /// were.
    void GetDouble(int field, double* values, int n) const;
    /// A symbol field: a small enumerated number.
    void SetSymb(int field, int value) const;
    void GetSymb(int field, int& value) const;
    void SetString(int field, KOVString const& value) const;
    void GetString(int field, KOVString& value) const;
    /// The text of the field; empty if it is unset.
    KOVString ReturnString(int field) const;
    void SetTypeID(int field, KOVSimTypeID value) const;
    void GetTypeID(int field, KOVSimTypeID& value) const;
    /// The fields that are set, ascending, and the kind of value each holds, for inspectors: 'i'
    /// integer, 'd' reals, 's' symbol, 't' text, 'y' type.
    KOVBasVector<int> Fields() const;
    char FieldKind(int field) const;

  private:
    KOVSimPosition m_position;
};
