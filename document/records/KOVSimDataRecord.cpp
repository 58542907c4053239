// Fields are rows of the table `fields`; reals are kept as the bytes of little-endian doubles,
// which is how this machine has them, so that no bit is lost on the way through SQL.
#include "KOVSimDataRecord.h"

#include <bit>
#include <climits>
#include <cstring>
#include <optional>
#include <string>

#include "document/records/Identity.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"
#include "document/store/Reference.h"

using namespace kov;
using records::Asked;
using store::Statement;

static_assert(std::endian::native == std::endian::little, "stored doubles are little-endian");

namespace {

constexpr char SetField[] = "INSERT OR REPLACE INTO fields(owner,field,kind,value) VALUES(?,?,?,?)";
constexpr char GetField[] = "SELECT kind,value FROM fields WHERE owner=? AND field=?";

std::string FieldText(int field) { return "field " + std::to_string(field); }

/// A write of one field: checked, and bound up to the value.
class FieldWrite {
  public:
    FieldWrite(KOVSimPosition const& position, int field, char kind)
        : m_insert(Checked(position, field).Cat(), SetField) {
        m_insert.Bind(store::ToReference(position.ID())).Bind(field).Bind(kind);
    }
    Statement& Value() { return m_insert; }

  private:
    static store::Context& Checked(KOVSimPosition const& position, int field) {
        Asked const asked{"set a field"};
        store::Context& context = records::ToWrite(position.ID(), asked);
        if (field < 0)
            records::Refuse(asked, position.ID(), std::to_string(field) + " is no field number");
        return context;
    }
    Statement m_insert;
};

/// A look at one field; false if it is unset or of another kind.
class FieldRead {
  public:
    FieldRead(KOVSimPosition const& position, int field) {
        store::Context* const context = records::ToRead(position.ID());
        if (!context) return;
        m_select.emplace(context->Cat(), GetField);
        m_select->Bind(store::ToReference(position.ID())).Bind(field);
        m_found = m_select->Step();
    }
    bool Found() const { return m_found; }
    bool Is(char kind) const { return m_found && m_select->Int(0) == kind; }
    Statement& Row() { return *m_select; }

  private:
    std::optional<Statement> m_select;
    bool m_found = false;
};

void SetNumber(KOVSimPosition const& position, int field, char kind, int value) {
    FieldWrite(position, field, kind).Value().Bind(value).Run();
}

void GetNumber(KOVSimPosition const& position, int field, char kind, int& value) {
    FieldRead read(position, field);
    if (!read.Is(kind)) return;
    std::int64_t const stored = read.Row().Int(1);
    if (stored < INT_MIN || stored > INT_MAX) {
        records::Refuse({"read a field"}, position.ID(),
                        FieldText(field) + " is damaged: it holds " + std::to_string(stored));
    }
    value = static_cast<int>(stored);
}

}  // namespace

void KOVSimDataRecord::SetInt(int field, int value) const {
    SetNumber(m_position, field, 'i', value);
}
void KOVSimDataRecord::GetInt(int field, int& value) const {
    GetNumber(m_position, field, 'i', value);
}
void KOVSimDataRecord::SetSymb(int field, int value) const {
    SetNumber(m_position, field, 's', value);
}
void KOVSimDataRecord::GetSymb(int field, int& value) const {
    GetNumber(m_position, field, 's', value);
}
void KOVSimDataRecord::SetTypeID(int field, KOVSimTypeID value) const {
    SetNumber(m_position, field, 'y', value);
}
void KOVSimDataRecord::GetTypeID(int field, KOVSimTypeID& value) const {
    GetNumber(m_position, field, 'y', value);
}

void KOVSimDataRecord::SetDouble(int field, double value) const { SetDouble(field, &value, 1); }

void KOVSimDataRecord::SetDouble(int field, double const* values, int n) const {
    if (n < 0)
        records::Refuse({"set a field"}, m_position.ID(),
                        "the count of values, " + std::to_string(n) + ", is negative");
    FieldWrite write(m_position, field, 'd');
    write.Value().BindBlob(values, static_cast<std::size_t>(n) * sizeof(double)).Run();
}

void KOVSimDataRecord::GetDouble(int field, double& value) const { GetDouble(field, &value, 1); }

void KOVSimDataRecord::GetDouble(int field, double* values, int n) const {
    FieldRead read(m_position, field);
    if (!read.Is('d') || n <= 0) return;
    std::string_view const bytes = read.Row().Blob(1);
    std::size_t const stored = bytes.size() / sizeof(double);
    std::size_t const count =
        stored < static_cast<std::size_t>(n) ? stored : static_cast<std::size_t>(n);
    if (count) std::memcpy(values, bytes.data(), count * sizeof(double));
}

void KOVSimDataRecord::SetString(int field, KOVString const& value) const {
    FieldWrite write(m_position, field, 't');
    write.Value()
        .BindText({value.TextOrEmpty(), static_cast<std::size_t>(value.GetLengthInByte())})
        .Run();
}

void KOVSimDataRecord::GetString(int field, KOVString& value) const {
    FieldRead read(m_position, field);
    if (!read.Is('t')) return;
    std::string_view const text = read.Row().Text(1);
    value.BuildFromUTF8(text.data(), static_cast<int>(text.size()));
}

KOVString KOVSimDataRecord::ReturnString(int field) const {
    KOVString value;
    GetString(field, value);
    return value;
}

KOVBasVector<int> KOVSimDataRecord::Fields() const {
    KOVBasVector<int> fields;
    store::Context* const context = records::ToRead(m_position.ID());
    if (!context) return fields;
    Statement select(context->Cat(), "SELECT field FROM fields WHERE owner=? ORDER BY field");
    select.Bind(store::ToReference(m_position.ID()));
    while (select.Step()) fields.PushBack(static_cast<int>(select.Int(0)));
    return fields;
}

char KOVSimDataRecord::FieldKind(int field) const {
    FieldRead read(m_position, field);
    return read.Found() ? static_cast<char>(read.Row().Int(0)) : '\0';
}
