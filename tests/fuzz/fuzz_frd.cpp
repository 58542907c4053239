// .frd files from untrusted bytes.
//
// A file is read to its end, or refused with a text that names it and a line: no exception of
// another kind may come. Blocks are rectangles with labels from 1 on. Reading all of it and passing
// over all of its fields give the same frames.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "FrdSource.h"
#include "ResultVariables.h"

namespace {

using namespace kov::tool;

void Require(bool condition) {
    if (!condition) std::abort();
}

std::unique_ptr<FrdSource> Open(std::uint8_t const* data, std::size_t size) {
    // A stream in memory cannot be empty.
    static std::uint8_t const kBlank = ' ';
    void* const bytes = const_cast<std::uint8_t*>(size == 0 ? &kBlank : data);
    std::FILE* const file = fmemopen(bytes, size == 0 ? 1 : size, "rb");
    Require(file != nullptr);
    return std::make_unique<FrdSource>(std::make_unique<TextLines>("f.frd", file));
}

void ReadFields(FrdSource& source) {
    ResultField field;
    ResultBlock block;
    while (source.NextField(field)) {
        Require(!field.label.empty() && !field.components.empty());
        Require(source.Where().rfind("f.frd:", 0) == 0);
        try {
            std::size_t columns = 0;
            for (ResultTarget const& target : TargetsOf(field)) columns += target.columns.size();
            Require(columns == field.components.size());
        } catch (ResultFault const&) {
            // The same component twice.
        }
        while (source.NextBlock(block)) {
            Require(block.points == 1 && !block.labels.empty());
            Require(block.values.size() == block.labels.size() * field.components.size());
            for (int const label : block.labels) Require(label > 0);
        }
    }
}

// How many frames there are; the last one may be broken.
int Frames(std::uint8_t const* data, std::size_t size, bool fields, bool& whole) {
    auto const source = Open(data, size);
    int frames = 0;
    whole = true;
    try {
        ResultFrame frame;
        while (source->NextFrame(frame)) {
            ++frames;
            if (fields) ReadFields(*source);
        }
        Require(!source->NextFrame(frame));
    } catch (Failure const& failure) {
        Require(std::string(failure.what()).rfind("f.frd:", 0) == 0);
        whole = false;
    }
    Require(source->Done() >= 0.0 && source->Done() <= 1.0);
    source->Notes();
    return frames;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    bool read = false;
    bool passed = false;
    int const frames = Frames(data, size, true, read);
    int const others = Frames(data, size, false, passed);
    // What is wrong with a number is told only by who reads it.
    Require(!read || (passed && frames == others));
    Require(frames <= others);
    return 0;
}
