// Keyword text from untrusted bytes: parsing, data lines and parameters.
//
// The callbacks do what the parser asks of them, each in its own way, so that no assertion about a
// callback can be reached. What follows from the text alone has to end well.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "KOVSrvKeywordDataReader.h"
#include "KOVSrvKeywordParameterReader.h"
#include "KOVSrvKeywordParser.h"

namespace {

using Parameters = KOVSrvKeywordParser::Parameters;

void Require(bool condition) {
    if (!condition) std::abort();
}

void ReadParameters(Parameters const& parameters) {
    char const* keys[] = {"nset", "elset", "type", "input", "n", "generate", nullptr};
    KOVSrvKeywordParameterReader reader(parameters, keys);
    int steps = 0;
    for (reader.First(); !reader.IsDone(); reader.Next(), ++steps) {
        KOVString const key = reader.CurrentKey();
        KOVString const value = reader.CurrentValueAsString();
        Require(value.GetLengthInChar() <= parameters.ConstGet(steps).GetLengthInChar());
        Require(key.GetLengthInByte() <= 8);
        reader.CurrentValueAsDouble();
        reader.CurrentValueAsInt();
    }
    Require(steps == parameters.Size());
}

void Skip(KOVString const&, Parameters const& parameters, KOVSrvKeywordParser& parser, void*) {
    ReadParameters(parameters);
    int const before = parser.LineNumber();
    parser.SkipToNextKeyword();
    Require(parser.IsEndOfFile() || parser.LineNumber() >= before);
}

/// Reads every line to its end, with fields of all kinds in turn.
void ReadData(KOVString const& keyword, Parameters const& parameters, KOVSrvKeywordParser& parser,
              void*) {
    ReadParameters(parameters);
    KOVSrvKeywordDataReader reader(parser);
    int kind = keyword.GetLengthInByte();
    for (reader.First(); !reader.IsDone(); reader.Next()) {
        for (int field = 0; field < 20; ++field, ++kind) {
            Require(reader.FieldNumber() == field);
            switch (kind % 3) {
                case 0:
                    reader.ReadInt(1);
                    break;
                case 1:
                    reader.ReadDouble(1.0);
                    break;
                default:
                    Require(reader.ReadString().GetLengthInByte() <= 255);
            }
        }
        int const* const flaw = reader.FlawedFields().Find(reader.LineNumber());
        Require(!flaw || (*flaw >= 0 && *flaw < 20));
    }
}

/// Takes lines and puts them back by hand.
void PutBack(KOVString const&, Parameters const&, KOVSrvKeywordParser& parser, void*) {
    for (;;) {
        char const* const line = parser.Readline();
        if (parser.IsEndOfFile()) return;
        int const number = parser.LineNumber();
        parser.Buffer(line);
        char const* const again = parser.Readline();
        Require(parser.LineNumber() == number);
        if (!parser.IsKeyword(again)) continue;
        parser.Buffer(again);
        return;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) return 0;
    FILE* const file = fmemopen(const_cast<std::uint8_t*>(data), size, "r");
    if (!file) return 0;
    {
        KOVSrvKeywordParser parser(file, nullptr);
        parser.Register("node", ReadData);
        parser.Register("nodefile", Skip);
        parser.Register("element", ReadData);
        parser.Register("nset", PutBack);
        parser.Register("heading", Skip);
        parser.RegisterUnknownKeywordCallback(Skip);
        parser.RegisterAmbiguousKeywordCallback(ReadData);
        parser.Parse();
        Require(parser.IsEndOfFile());
    }
    std::fclose(file);
    return 0;
}
