#include "KOVSimDataRecord.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "KOVSimSchema.h"
#include "support/DocumentFixture.h"

namespace {

using kov::test::DocumentTest;
using kov::test::RefusalOf;

class DataRecord : public DocumentTest {};
KOV_DOCUMENT_TESTS(DataRecord);

std::uint64_t Bits(double value) {
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

TEST_P(DataRecord, AnUnsetFieldLeavesTheCallersVariable) {
    KOVSimDataRecord const record = Document().GetModel().DataRecord();
    int integer = 5;
    double real = 2.5;
    double reals[3] = {1, 2, 3};
    int symbol = 6;
    KOVString text("before");
    KOVSimTypeID type = 9;
    record.GetInt(90, integer);
    record.GetDouble(90, real);
    record.GetDouble(90, reals, 3);
    record.GetSymb(90, symbol);
    record.GetString(90, text);
    record.GetTypeID(90, type);
    EXPECT_EQ(5, integer);
    EXPECT_EQ(2.5, real);
    EXPECT_EQ(3.0, reals[2]);
    EXPECT_EQ(6, symbol);
    EXPECT_EQ("before", text);
    EXPECT_EQ(9, type);
    EXPECT_TRUE(record.ReturnString(90).IsEmpty());
    EXPECT_EQ('\0', record.FieldKind(90));
}

TEST_P(DataRecord, EveryKindOfFieldComesBack) {
    KOVSimPosition position;
    Write([&] {
        KOVSimDataRecord const record = Document().CreateDataRecord(schema::Condition());
        position = record.Pos();
        record.SetInt(0, INT_MIN);
        record.SetDouble(1, 0.1);
        record.SetSymb(2, 3);
        record.SetString(3, "Größe");
        record.SetTypeID(4, schema::Mesh());
        record.SetString(5, KOVString());
    });
    Reopen();
    KOVSimDataRecord const record(Again(position));
    int integer = 0;
    double real = 0;
    int symbol = 0;
    KOVSimTypeID type = 0;
    KOVString empty("before");
    record.GetInt(0, integer);
    record.GetDouble(1, real);
    record.GetSymb(2, symbol);
    record.GetTypeID(4, type);
    record.GetString(5, empty);
    EXPECT_EQ(INT_MIN, integer);
    EXPECT_EQ(Bits(0.1), Bits(real));
    EXPECT_EQ(3, symbol);
    EXPECT_EQ("Größe", record.ReturnString(3));
    EXPECT_EQ(schema::Mesh(), type);
    EXPECT_TRUE(empty.IsEmpty());
    KOVBasVector<int> const fields = record.Fields();
    ASSERT_EQ(6, fields.Size());
    char const* const kinds = "idstyt";
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(i, fields[i]);
        EXPECT_EQ(kinds[i], record.FieldKind(i));
    }
}

TEST_P(DataRecord, RealsKeepEveryBit) {
    double values[6] = {-0.0, std::numeric_limits<double>::infinity(), 5e-324, 0, 0, 1.0 / 3};
    std::uint64_t const payload = 0x7ff800000badcafeu;
    std::uint64_t const signalling = 0xfff0000000000001u;
    std::memcpy(&values[3], &payload, sizeof payload);
    std::memcpy(&values[4], &signalling, sizeof signalling);
    KOVSimPosition position;
    Write([&] {
        KOVSimDataRecord const record = Document().CreateDataRecord(schema::Condition());
        position = record.Pos();
        record.SetDouble(0, values, 6);
        record.SetDouble(1, values[3]);
    });
    Reopen();
    double back[6] = {};
    KOVSimDataRecord(Again(position)).GetDouble(0, back, 6);
    EXPECT_EQ(0, std::memcmp(values, back, sizeof back));
    double one = 0;
    KOVSimDataRecord(Again(position)).GetDouble(1, one);
    EXPECT_EQ(payload, Bits(one));
}

TEST_P(DataRecord, AShorterArrayLeavesTheEntriesBehindIt) {
    Write([&] {
        KOVSimDataRecord const record = Document().CreateDataRecord(schema::Condition());
        double const values[2] = {1, 2};
        record.SetDouble(0, values, 2);
        record.SetDouble(1, nullptr, 0);
        double back[3] = {7, 8, 9};
        record.GetDouble(0, back, 3);
        EXPECT_EQ(2, back[1]);
        EXPECT_EQ(9, back[2]);
        record.GetDouble(0, back, 1);
        double first = 0;
        record.GetDouble(0, first);
        EXPECT_EQ(1, first);
        record.GetDouble(1, first);
        EXPECT_EQ(1, first);
        EXPECT_EQ('d', record.FieldKind(1));
        EXPECT_NE("", RefusalOf([&] { record.SetDouble(0, values, -1); }));
    });
}

TEST_P(DataRecord, AFieldOfAnotherKindLeavesTheVariableAndIsReplacedBySetting) {
    Write([&] {
        KOVSimDataRecord const record = Document().CreateDataRecord(schema::Condition());
        record.SetInt(0, 4);
        double real = 2.5;
        record.GetDouble(0, real);
        EXPECT_EQ(2.5, real);
        int symbol = 8;
        record.GetSymb(0, symbol);
        EXPECT_EQ(8, symbol);
        record.SetDouble(0, 1.5);
        int integer = 11;
        record.GetInt(0, integer);
        EXPECT_EQ(11, integer);
        record.GetDouble(0, real);
        EXPECT_EQ(1.5, real);
        EXPECT_EQ(1, record.Fields().Size());
    });
}

TEST_P(DataRecord, TextKeepsZeroBytesAndBytesThatAreNoUtf8) {
    char const bytes[] = {'a', '\0', 'b', '\xff', '\xfe'};
    KOVSimPosition position;
    Write([&] {
        KOVSimDataRecord const record = Document().CreateDataRecord(schema::Condition());
        position = record.Pos();
        KOVString text;
        text.BuildFromUTF8(bytes, 5);
        record.SetString(0, text);
    });
    Reopen();
    KOVString const back = KOVSimDataRecord(Again(position)).ReturnString(0);
    ASSERT_EQ(5, back.GetLengthInByte());
    EXPECT_EQ(0, std::memcmp(bytes, back.Text(), 5));
}

TEST_P(DataRecord, FieldsOutsideATransactionAreRefused) {
    std::string const text = RefusalOf([&] { Document().GetModel().DataRecord().SetInt(1, 1); });
    EXPECT_NE(std::string::npos, text.find("cannot set a field")) << text;
    EXPECT_NE(std::string::npos, text.find("no transaction is open")) << text;
}

TEST_P(DataRecord, DroppedChangesComeBackAsTheyWere) {
    KOVSimDataRecord const record = Document().GetModel().DataRecord();
    Write([&] { record.SetInt(3, 1); });
    WriteAndDrop([&] {
        record.SetInt(3, 2);
        int value = 0;
        record.GetInt(3, value);
        EXPECT_EQ(2, value);
    });
    int value = 0;
    record.GetInt(3, value);
    EXPECT_EQ(1, value);
}

}  // namespace
