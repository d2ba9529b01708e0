#include "engine/loaded_file.h"

#include <utility>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// Wait of one call, short enough to go unnoticed.
constexpr auto SHORT_WAIT = 5ms;
/// Time after loading from which on nobody waits for a slow disk.
constexpr auto LONGEST_WAIT = 3s;

} // namespace

LoadedFile::LoadedFile(std::shared_ptr<const FileReader> reader)
    : reader_(std::move(reader)), kind_(detectFileKind(reader_)),
      measure_(kind_.stream ? std::make_unique<FileMeasure>(reader_, *kind_.stream) : nullptr) {
    facts_.known = measure_ == nullptr;
    if (measure_) {
        facts_.measurement = measure_->measurement();
    }
}

void LoadedFile::setFacts(Facts facts) {
    const std::lock_guard lock(mutex_);
    facts_ = std::move(facts);
    changed_.notify_all();
}

LoadedFile::Facts LoadedFile::facts() const {
    const std::lock_guard lock(mutex_);
    return facts_;
}

Measurement LoadedFile::measurement() const {
    const std::lock_guard lock(mutex_);
    return facts_.measurement;
}

bool LoadedFile::waitUntilKnown() const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, SHORT_WAIT, [this] { return facts_.known; }) ||
           std::chrono::steady_clock::now() - loadedAt_ >= LONGEST_WAIT;
}

} // namespace zvonivec
