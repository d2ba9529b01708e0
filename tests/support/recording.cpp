#include "tests/support/recording.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace support {

Recording::Recording(const PulseServer& server, Wanted wanted)
    : rate_(server.sink().rate), channels_(server.sink().channels) {
    const bool isPatient = wanted == Wanted::whole && server.kind() == PulseServer::Kind::pipeWire;
    Process::Options options;
    options.environment = server.sessionOfClients();
    options.outputFile = folder_.file("recording");
    options.errorFile = "/dev/null";
    process_ =
        Process({"parec", "--raw", "--device=" + PulseServer::monitor(), "--format=s16le",
                 "--rate=" + std::to_string(rate_), "--channels=" + std::to_string(channels_),
                 isPatient ? "--latency-msec=100" : "--latency-msec=10"},
                options);
    waitUntil([this] { return frames() != 0; });
}

Samples Recording::samples() const {
    return samplesFromFile(folder_.file("recording"));
}

std::size_t Recording::frames() const {
    std::error_code ignored;
    const auto size = std::filesystem::file_size(folder_.file("recording"), ignored);
    return ignored ? 0 : static_cast<std::size_t>(size) / 2 / static_cast<std::size_t>(channels_);
}

void Recording::waitFor(std::chrono::milliseconds time) const {
    const std::size_t target =
        frames() + static_cast<std::size_t>(time.count()) * static_cast<std::size_t>(rate_) / 1000;
    waitUntil([&] { return frames() >= target; }, time + std::chrono::seconds(10));
}

bool Recording::waitForSilence(std::chrono::milliseconds length,
                               std::chrono::milliseconds limit) const {
    const std::size_t count = static_cast<std::size_t>(length.count()) *
                              static_cast<std::size_t>(rate_ * channels_) / 1000;
    return waitUntil(
        [&] {
            const Samples all = samples();
            return all.size() >= count && behindLastSound(all) + count <= all.size();
        },
        limit);
}

Samples samplesFromFile(const std::string& path) {
    const std::string bytes = readFile(path);
    Samples samples(bytes.size() / 2);
    std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    return samples;
}

std::size_t equalLength(const Samples& a, std::size_t atA, const Samples& b, std::size_t atB,
                        int difference) {
    std::size_t length = 0;
    while (atA + length < a.size() && atB + length < b.size() &&
           std::abs(a[atA + length] - b[atB + length]) <= difference) {
        ++length;
    }
    return length;
}

std::optional<std::size_t> findIn(const Samples& whole, const Samples& part, std::size_t from,
                                  int difference) {
    for (std::size_t at = from; at + part.size() <= whole.size(); ++at) {
        if (equalLength(whole, at, part, 0, difference) == part.size()) {
            return at;
        }
    }
    return std::nullopt;
}

Match follow(const Samples& recording, std::size_t at, const Samples& sound, std::size_t from,
             bool gaps, int difference) {
    Match match;
    match.end = at;
    for (;;) {
        const std::size_t length =
            equalLength(recording, match.end, sound, from + match.length, difference);
        match.end += length;
        match.length += length;
        if (!gaps || from + match.length >= sound.size()) {
            return match;
        }
        // Zeros of the sound itself that follow the gap look like a part of it. A gap may be as
        // short as a frame: where samples were lost, the sound doesn't go on after it.
        const std::size_t next = firstSound(recording, match.end);
        const std::size_t own = firstSound(sound, from + match.length) - from - match.length;
        const bool isGap = next > match.end + own && next < recording.size();
        if (!isGap || length == 0) {
            return match;
        }
        match.silence += next - own - match.end;
        match.end = next - own;
    }
}

std::size_t firstSound(const Samples& samples, std::size_t from) {
    const auto begin =
        samples.begin() + static_cast<std::ptrdiff_t>(std::min(from, samples.size()));
    const auto found = std::find_if(begin, samples.end(), [](std::int16_t s) { return s != 0; });
    return static_cast<std::size_t>(found - samples.begin());
}

std::size_t behindLastSound(const Samples& samples) {
    const auto found =
        std::find_if(samples.rbegin(), samples.rend(), [](std::int16_t s) { return s != 0; });
    return static_cast<std::size_t>(samples.rend() - found);
}

} // namespace support
