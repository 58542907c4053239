// Writes a keyword deck of shell elements, each of which has a composite section of its own: as
// many sections as elements, and as many layers in each as wanted.
//
//   --out shells.inp --sections 100000 --layers 20
//
// Each layer has a thickness, a number of section points, one of 10 materials, an angle, and one of
// as many plies as there are layers.
#include <algorithm>

#include "bench/support/Measure.h"
#include "bench/support/TextFile.h"

namespace {

constexpr int kMaterials = 10;

void WriteMesh(bench::TextFile& text, int sections, int wide) {
    text << "*HEADING\nA strip of shells\n*NODE\n";
    int const rows = (sections + wide - 1) / wide;
    for (int j = 0; j <= rows; ++j) {
        for (int i = 0; i <= wide; ++i) {
            text << j * (wide + 1) + i + 1;
            (text << ", ").Fixed(0.25 * i, 2);
            (text << ", ").Fixed(0.5 * j, 1);
            text << ", 0.\n";
        }
    }
    for (int e = 0; e < sections; ++e) {
        int const node = e / wide * (wide + 1) + e % wide + 1;
        text << "*ELEMENT, TYPE=S4R, ELSET=S" << e + 1 << "\n" << e + 1;
        for (int const corner : {node, node + 1, node + wide + 2, node + wide + 1})
            text << ", " << corner;
        text << "\n";
    }
}

void WriteSections(bench::TextFile& text, int sections, int layers) {
    for (int e = 0; e < sections; ++e) {
        text << "*SHELL SECTION, ELSET=S" << e + 1 << ", COMPOSITE\n";
        for (int layer = 0; layer < layers; ++layer) {
            text.Fixed(1e-6 * (125 + (7 * e + layer) % 100), 6);
            text << ", 3, M" << (e + layer) % kMaterials + 1;
            text << ", " << 15 * ((e + 3 * layer) % 12) - 90 << "., P" << layer + 1 << "\n";
        }
    }
}

void Run(bench::Options const& options) {
    int const sections = options.Int("sections", 100'000);
    bench::TextFile text(options.Text("out", "shells.inp"));
    WriteMesh(text, sections, std::min(sections, 1000));
    WriteSections(text, sections, options.Int("layers", 20));
    for (int i = 0; i < kMaterials; ++i) text << "*MATERIAL, NAME=M" << i + 1 << "\n";
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
