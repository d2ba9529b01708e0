#include "engine/loaded_file.h"

#include <algorithm>
#include <utility>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// Wait of one call, short enough to go unnoticed.
constexpr auto SHORT_WAIT = 5ms;
/// Time after loading from which on nobody waits for a slow disk: a window that answers later than
/// a tenth of a second seems to stand still.
constexpr auto LONGEST_WAIT = 80ms;

} // namespace

LoadedFile::LoadedFile(const std::shared_ptr<const FileReader>& reader)
    : LoadedFile([reader] { return reader; }) {
    read();
}

void LoadedFile::read() {
    {
        const std::lock_guard lock(mutex_);
        if (reading_ != Reading::notBegun) {
            return;
        }
        reading_ = Reading::begun;
    }
    reader_ = open_();
    kind_ = detectFileKind(reader_);
    if (kind_.stream) {
        measure_ = std::make_unique<FileMeasure>(reader_, *kind_.stream);
    }
    const std::lock_guard lock(mutex_);
    reading_ = Reading::done;
    extension_ = kind_.extension;
    facts_.known = measure_ == nullptr;
    if (measure_) {
        facts_.measurement = measure_->measurement();
    }
    changed_.notify_all();
}

void LoadedFile::setFacts(Facts facts) {
    const std::lock_guard lock(mutex_);
    facts_ = std::move(facts);
    changed_.notify_all();
}

bool LoadedFile::readingHasBegun() const {
    const std::lock_guard lock(mutex_);
    return reading_ != Reading::notBegun;
}

bool LoadedFile::kindIsKnown() const {
    const std::lock_guard lock(mutex_);
    return reading_ == Reading::done;
}

std::string LoadedFile::extension() const {
    const std::lock_guard lock(mutex_);
    return extension_;
}

LoadedFile::Facts LoadedFile::facts() const {
    const std::lock_guard lock(mutex_);
    return facts_;
}

Measurement LoadedFile::measurement() const {
    const std::lock_guard lock(mutex_);
    return facts_.measurement;
}

bool LoadedFile::waitUntilKindIsKnown() const {
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, loadedAt_ + LONGEST_WAIT,
                               [this] { return reading_ == Reading::done; });
}

bool LoadedFile::waitIsOver() const {
    const auto end = loadedAt_ + LONGEST_WAIT;
    const auto now = std::chrono::steady_clock::now();
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, std::min(end, now + SHORT_WAIT), [this] {
        return facts_.known;
    }) || now >= end;
}

} // namespace zvonivec
