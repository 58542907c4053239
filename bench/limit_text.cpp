// The limits of reading keyword text: each number of a deck read by fgets with strtod, and by
// from_chars over a mapping. The first is what most readers do, the second what the text allows.
//
//   --deck model.inp
#include <charconv>

#include "bench/support/Measure.h"

namespace {

double WithStrtod(std::string const& path) {
    FILE* const file = std::fopen(path.c_str(), "r");
    char line[4096];
    double sum = 0;
    while (std::fgets(line, sizeof line, file)) {
        if (line[0] == '*') continue;
        for (char* at = line; *at && *at != '\n';) {
            char* end = nullptr;
            sum += std::strtod(at, &end);
            if (end == at) break;
            at = *end == ',' ? end + 1 : end;
        }
    }
    std::fclose(file);
    return sum;
}

double WithFromChars(std::string const& path) {
    int const file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    auto const bytes = static_cast<std::size_t>(lseek(file, 0, SEEK_END));
    void* const place = mmap(nullptr, bytes, PROT_READ, MAP_SHARED | MAP_POPULATE, file, 0);
    char const* at = static_cast<char const*>(place);
    char const* const end = at + bytes;
    double sum = 0;
    while (at < end) {
        if (*at == '*') {
            while (at < end && *at != '\n') ++at;
        } else if (*at == ',' || *at == '\n' || *at == ' ') {
            ++at;
        } else {
            double number = 0;
            auto const [next, error] = std::from_chars(at, end, number);
            sum += number;
            at = next;
            if (error != std::errc()) {
                while (at < end && *at != '\n') ++at;
            }
        }
    }
    munmap(place, bytes);
    close(file);
    return sum;
}

}  // namespace

int main(int argc, char** argv) {
    std::string const deck = bench::Options(argc, argv).Text("deck", "model.inp");
    auto const bytes = static_cast<double>(std::filesystem::file_size(deck));
    double one = 0, other = 0;
    double seconds = bench::Seconds([&] { one = WithStrtod(deck); });
    bench::Report("text", "fgets, strtod", bytes / seconds);
    seconds = bench::Seconds([&] { other = WithFromChars(deck); });
    bench::Report("text", "mmap, from_chars", bytes / seconds);
    return one == other ? 0 : 1;
}
