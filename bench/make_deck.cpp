// Writes a keyword deck of hexahedra of about a given size, or with a given number of nodes.
//
//   --out model.inp --megabytes 1000        --out model.inp --nodes 10000000
#include "bench/support/HexMesh.h"
#include "bench/support/TextFile.h"

int main(int argc, char** argv) {
    bench::Options const options(argc, argv);
    // A node line takes about 45 bytes and an element line about 75.
    int const wanted = options.Int("nodes", options.Int("megabytes", 1000) * 8300);
    bench::HexMesh const mesh(wanted);
    std::vector<int> nodes(8 * static_cast<std::size_t>(mesh.NumberElements()));
    mesh.Connectivity(nodes.data());

    std::mt19937_64 random(7);
    // Coordinates have `--digits` decimals, before which there are up to four digits.
    int const digits = options.Int("digits", 6);
    std::uniform_real_distribution<double> coordinate(-1000, 1000);
    bench::TextFile text(options.Text("out", "model.inp"));
    text << "*HEADING\nA block of hexahedra\n*NODE, NSET=ALL-NODES\n";
    for (int i = 0; i < mesh.NumberNodes(); ++i) {
        text << i + 1;
        for (int c = 0; c < 3; ++c) (text << ", ").Fixed(coordinate(random), digits);
        text << "\n";
    }
    text << "*ELEMENT, TYPE=C3D8, ELSET=ALL-ELEMENTS\n";
    for (int e = 0; e < mesh.NumberElements(); ++e) {
        text << e + 1;
        for (int k = 0; k < 8; ++k) {
            text << ", "
                 << nodes[8 * static_cast<std::size_t>(e) + static_cast<std::size_t>(k)] + 1;
        }
        text << "\n";
    }
    return 0;
}
