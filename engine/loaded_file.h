// The file that the engine has loaded, and what is known of it.
#pragma once

#include "engine/failure.h"
#include "engine/reading/file_kind.h"
#include "engine/reading/file_measure.h"
#include "engine/reading/file_reader.h"
#include "engine/tags/tags.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace zvonivec {

/// Made on the user-interface thread, measured on the decoder thread, read on both.
class LoadedFile {
public:
    /// Estimates until known is True, final afterwards.
    struct Facts {
        bool known = false;
        Measurement measurement;
        TrackTags tags;
    };

    /// Finds out a file's kind. For a file that couldn't be opened (null), or is no MP3 file, known
    /// is True at once and the facts are empty.
    explicit LoadedFile(std::shared_ptr<const FileReader> reader);
    explicit LoadedFile(const std::string& path) : LoadedFile(FileReader::open(path)) {}

    [[nodiscard]] const std::shared_ptr<const FileReader>& reader() const { return reader_; }
    [[nodiscard]] const FileKind& kind() const { return kind_; }

    /// Null unless the file is an MP3 file. For use by the decoder thread only.
    [[nodiscard]] FileMeasure* measure() { return measure_.get(); }

    /// Decoder thread: publishes what it has found out.
    void setFacts(Facts facts);

    /// Why a file without a measure can't be played.
    [[nodiscard]] Failure failure() const {
        return {reader_ ? Failure::Cause::notMp3 : Failure::Cause::notOpened, {}};
    }

    [[nodiscard]] Facts facts() const;
    [[nodiscard]] Measurement measurement() const;

    /// Waits a few milliseconds for the facts. True when they are known, and also three seconds
    /// after loading, when the caller has to do with the estimates.
    [[nodiscard]] bool waitUntilKnown() const;

private:
    const std::shared_ptr<const FileReader> reader_;
    const FileKind kind_;
    const std::unique_ptr<FileMeasure> measure_;
    const std::chrono::steady_clock::time_point loadedAt_ = std::chrono::steady_clock::now();

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Facts facts_; ///< guarded by mutex_
};

} // namespace zvonivec
