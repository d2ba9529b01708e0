// Measures how the cost of a file grows with its size. Prints a line of tab-separated figures for
// each file, warm and cold. The script bench/growth starts it and draws the plot.

#include "bench/files.h"
#include "bench/probe.h"
#include "bench/report.h"
#include "engine/decoding/mp3_decoder.h"
#include "engine/loaded_file.h"
#include "tests/support/process.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace {

using namespace zvonivec;
using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point moment) {
    return std::chrono::duration<double, std::milli>(Clock::now() - moment).count();
}

struct Figures {
    double open = 0;   ///< ms until the file's kind and a first length are known
    double walk = 0;   ///< ms until all frames have been seen
    double seek = 0;   ///< ms from a seek to nine tenths of the track to the first samples
    double memory = 0; ///< bytes of written memory that the process has gained
};

/// Runs in a process of its own for each measurement, so that none finds the memory of another.
Figures measure(const std::string& path, bool cold) {
    Figures figures;
    if (cold) {
        bench::makeCold(path);
    }
    const double before = bench::memoryOf(getpid()).ownWritten;
    auto begin = Clock::now();
    LoadedFile file(path);
    if (file.measure() == nullptr || file.measurement().seconds <= 0) {
        std::fprintf(stderr, "%s isn't known as an MP3 file\n", path.c_str());
        std::exit(1);
    }
    figures.open = millisecondsSince(begin);

    begin = Clock::now();
    FileMeasure& walk = *file.measure();
    while (!walk.done()) {
        walk.walk(std::uint64_t{1} << 20U);
    }
    figures.walk = millisecondsSince(begin);

    if (cold) {
        bench::makeCold(path);
    }
    begin = Clock::now();
    Mp3Decoder decoder(file.reader(), *file.kind().stream, walk);
    if (decoder.seek(walk.samples() / 10 * 9) ||
        decoder.read().result != Mp3Decoder::Result::samples) {
        std::fputs("nothing is decoded\n", stderr);
        std::exit(1);
    }
    figures.seek = millisecondsSince(begin);
    figures.memory = bench::memoryOf(getpid()).ownWritten - before;
    return figures;
}

int measureAndPrint(const std::string& path, bool cold) {
    const Figures figures = measure(path, cold);
    std::printf("%.3f %.3f %.3f %.0f\n", figures.open, figures.walk, figures.seek, figures.memory);
    return 0;
}

/// Returns the median of each figure over several runs.
Figures medians(const std::string& self, const std::string& path, bool cold,
                const support::TemporaryFolder& folder) {
    constexpr int runs = 5;
    std::vector<double> open, walk, seek, memory;
    for (int i = 0; i < runs; ++i) {
        support::Process::Options options;
        options.outputFile = folder.file("figures");
        Figures one;
        if (support::run({self, "--one", path, cold ? "cold" : "warm"}, options) != 0 ||
            std::sscanf(support::readFile(options.outputFile).c_str(), "%lf %lf %lf %lf", &one.open,
                        &one.walk, &one.seek, &one.memory) != 4) {
            std::exit(1);
        }
        open.push_back(one.open);
        walk.push_back(one.walk);
        seek.push_back(one.seek);
        memory.push_back(one.memory);
    }
    return {*bench::median(open), *bench::median(walk), *bench::median(seek),
            *bench::median(memory)};
}

} // namespace

int main(int count, char** arguments) {
    const std::string self = arguments[0];
    if (count == 4 && std::string(arguments[1]) == "--one") {
        return measureAndPrint(arguments[2], std::string(arguments[3]) == "cold");
    }
    const std::uint64_t largest = count == 2 ? std::strtoull(arguments[1], nullptr, 10) : 1000;
    const support::TemporaryFolder folder;
    std::printf("# %s\n# MB\tdescribed\tcold\topen ms\twalk ms\tseek ms\tmemory bytes\twalk MB/s\n",
                bench::machine().c_str());
    for (std::uint64_t megabytes = 1; megabytes <= largest; megabytes *= 10) {
        for (const bool described : {true, false}) {
            const std::string path = folder.file("frames.mp3");
            bench::writeFrames(path, megabytes, described);
            for (const bool cold : {false, true}) {
                const Figures is = medians(self, path, cold, folder);
                std::printf("%d\t%d\t%d\t%.3f\t%.3f\t%.3f\t%.0f\t%.0f\n",
                            static_cast<int>(megabytes), described ? 1 : 0, cold ? 1 : 0, is.open,
                            is.walk, is.seek, is.memory,
                            static_cast<double>(megabytes) / is.walk * 1000);
                std::fflush(stdout);
            }
        }
    }
    return 0;
}
