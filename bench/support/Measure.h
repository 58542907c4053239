// What every measuring program needs: time, memory, touched buffers, lasting files, options and
// one JSON line for each result. bench/table.py runs the programs and reads the lines.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

inline double Now() {
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

/// Seconds that `work` takes.
template <class Work>
double Seconds(Work&& work) {
    double const start = Now();
    work();
    return Now() - start;
}

/// An array with every page touched, in huge pages where they are to be had.
template <class T>
class Array {
  public:
    explicit Array(std::size_t size) : m_size(size) {
        constexpr std::size_t kHugePage = std::size_t{2} << 20;
        std::size_t const bytes = (size * sizeof(T) + kHugePage - 1) / kHugePage * kHugePage;
        void* place = nullptr;
        if (posix_memalign(&place, kHugePage, bytes) != 0) throw std::bad_alloc();
        (void)madvise(place, bytes, MADV_HUGEPAGE);
        std::memset(place, 0, bytes);
        m_data = static_cast<T*>(place);
    }
    ~Array() { std::free(m_data); }
    Array(Array const&) = delete;
    Array& operator=(Array const&) = delete;

    T* data() { return m_data; }
    T const* data() const { return m_data; }
    std::size_t size() const { return m_size; }
    T& operator[](std::size_t i) { return m_data[i]; }
    T const& operator[](std::size_t i) const { return m_data[i]; }

  private:
    T* m_data;
    std::size_t m_size;
};

/// The options of a program: `--name value` pairs.
class Options {
  public:
    Options(int argc, char** argv) : m_words(argv + 1, argv + argc) {}
    std::string Text(std::string const& name, std::string const& otherwise) const {
        for (std::size_t i = 0; i + 1 < m_words.size(); ++i) {
            if (m_words[i] == "--" + name) return m_words[i + 1];
        }
        return otherwise;
    }
    int Int(std::string const& name, int otherwise) const {
        return std::stoi(Text(name, std::to_string(otherwise)));
    }

  private:
    std::vector<std::string> m_words;
};

/// Peak memory of the process since the last `ResetPeak`, in MB.
inline void ResetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }
inline double MemoryMB(char const* field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(field, 0) == 0) return std::atof(line.c_str() + std::strlen(field)) / 1024;
    }
    return 0;
}

/// How far a piece of work raises memory above what was in use before it.
template <class Work>
double PeakMB(Work&& work) {
    ResetPeak();
    double const before = MemoryMB("VmRSS:");
    work();
    double const peak = MemoryMB("VmHWM:") - before;
    return peak > 0 ? peak : 0;
}

/// Makes what stands in a file lasting.
inline void SyncFile(std::string const& path) {
    int const file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (file < 0 || fdatasync(file) != 0) throw std::runtime_error("cannot sync " + path);
    close(file);
}

/// A path in the folder of `--dir` at which nothing stands.
inline std::string FreshPath(Options const& options, std::string const& name) {
    std::filesystem::path const folder = options.Text("dir", "/tmp");
    std::filesystem::create_directories(folder);
    std::filesystem::path const path = folder / name;
    std::filesystem::remove_all(path);
    return path.string();
}

/// One result: `{"row": ..., "who": ..., "value": ..., "mb": ...}`.
inline void Report(std::string const& row, std::string const& who, double value, double mb = -1) {
    std::printf("{\"row\": \"%s\", \"who\": \"%s\", \"value\": %.6g", row.c_str(), who.c_str(),
                value);
    if (mb >= 0) std::printf(", \"mb\": %.1f", mb);
    std::printf("}\n");
    std::fflush(stdout);
}

inline double Median(std::vector<double> values) {
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The main program of a measure: status 1 and the text on standard error if `run` throws.
inline int Main(int argc, char** argv, void (*run)(Options const&)) {
    try {
        run(Options(argc, argv));
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}

}  // namespace bench
