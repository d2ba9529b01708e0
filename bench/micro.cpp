// Measures the functions that run often, each by itself.

#include "bench/files.h"
#include "bench/player_at_work.h"
#include "engine/decoding/mp3_decoder.h"
#include "engine/loaded_file.h"
#include "engine/output/sample_feed.h"
#include "tests/support/mp3_samples.h"

#include <QImage>
#include <QWidget>
#include <array>
#include <benchmark/benchmark.h>

namespace {

using namespace zvonivec;

const support::TemporaryFolder& folder() {
    static const support::TemporaryFolder one;
    return one;
}

/// A song of noise: as much work for a decoder as music can be.
const std::string& song() {
    static const std::string path = [] {
        std::string file = folder().file("song.mp3");
        support::encodeNoise(file, 60, {"-b", "128"});
        return file;
    }();
    return path;
}

/// Shared by all measurements, because a process has one toolkit.
bench::PlayerAtWork& playerAtWork() {
    static bench::PlayerAtWork work;
    return work;
}

/// Decodes a second of sound, from the file through the ring to the device's buffer.
void decodeThroughTheRing(benchmark::State& state) {
    LoadedFile file(song());
    FileMeasure& measure = *file.measure();
    Mp3Decoder decoder(file.reader(), *file.kind().stream, measure);
    SampleFeed feed(32768);
    feed.setFormat(2, decoder.sampleRate());
    feed.setGain(0.5F);
    feed.beginStream(1);
    feed.allow(1);
    const auto toTheStart = [&] {
        if (decoder.seek(0)) {
            state.SkipWithError("libmpg123 can't be set up");
        }
    };
    toTheStart();
    std::array<std::int16_t, 4096> device{};
    while (state.KeepRunning()) {
        for (int frames = 0; frames < decoder.sampleRate();) {
            const Mp3Decoder::Block block = decoder.read();
            if (block.result != Mp3Decoder::Result::samples) {
                toTheStart();
                continue;
            }
            feed.write(block.samples);
            frames += static_cast<int>(block.samples.size() / 2);
            while (feed.writeIndex() - feed.readIndex() >= device.size() / 2) {
                feed.fill(device);
                feed.setClock(feed.deviceFrame(), SampleFeed::Clock::now(), false);
            }
        }
        benchmark::DoNotOptimize(device);
    }
    state.counters["times real time"] =
        benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(decodeThroughTheRing)->Unit(benchmark::kMillisecond);

/// Fills a device's buffer of 45 ms.
void fillTheDevice(benchmark::State& state) {
    constexpr std::size_t frames = 1984;
    SampleFeed feed(32768);
    feed.setFormat(2, 44100);
    feed.setGain(static_cast<float>(state.range(0)) / 100);
    feed.beginStream(1);
    feed.allow(1);
    const support::Samples samples = support::noise(1);
    std::array<std::int16_t, frames * 2> device{};
    while (state.KeepRunning()) {
        feed.write({samples.data(), frames * 2});
        feed.fill(device);
        feed.setClock(feed.deviceFrame(), SampleFeed::Clock::now(), false);
        benchmark::DoNotOptimize(device);
    }
}
BENCHMARK(fillTheDevice)->Arg(100)->Arg(50)->Unit(benchmark::kMicrosecond);

void walkFrames(benchmark::State& state) {
    constexpr std::uint64_t megabytes = 10;
    const std::string path = folder().file("frames.mp3");
    bench::writeFrames(path, megabytes, false);
    const LoadedFile known(path);
    while (state.KeepRunning()) {
        FileMeasure measure(known.reader(), *known.kind().stream);
        while (!measure.done()) {
            measure.walk(std::uint64_t{1} << 20U);
        }
        benchmark::DoNotOptimize(measure.samples());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(megabytes << 20U));
}
BENCHMARK(walkFrames)->Unit(benchmark::kMillisecond);

/// Includes the events that the handler serves.
void timerHandler(benchmark::State& state) {
    frmPlayer& player = playerAtWork().player();
    player.Timer1.setEnabled(false);
    if (state.range(0) == 1) {
        playerAtWork().open(song());
        player.Timer1.setEnabled(false);
    }
    while (state.KeepRunning()) {
        player.Timer1.Tick();
    }
    state.SetLabel(state.range(0) == 1 ? "playing" : "idle");
}
BENCHMARK(timerHandler)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

/// The picture of the strip that the display server gets, once for every text.
void paintTheStrip(benchmark::State& state) {
    frmPlayer& player = playerAtWork().player();
    auto* strip = QWidget::find(player.hWnd())->findChild<QWidget*>("picDisplay");
    QImage picture(strip->size(), QImage::Format_RGB32);
    while (state.KeepRunning()) {
        strip->render(&picture);
    }
}
BENCHMARK(paintTheStrip)->Unit(benchmark::kMicrosecond);

void paintTheBar(benchmark::State& state) {
    frmPlayer& player = playerAtWork().player();
    auto* bar = QWidget::find(player.hWnd())->findChild<QWidget*>("PB");
    QImage picture(bar->size(), QImage::Format_RGB32);
    while (state.KeepRunning()) {
        bar->render(&picture);
    }
}
BENCHMARK(paintTheBar)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    if (!playerAtWork().ok()) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
