// The file that the engine has loaded, and what is known of it.
#pragma once

#include "engine/failure.h"
#include "engine/reading/file_kind.h"
#include "engine/reading/file_measure.h"
#include "engine/reading/file_reader.h"
#include "engine/tags/tags.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace zvonivec {

/// Made on the user-interface thread, which doesn't touch the disk; read and measured on the
/// decoder thread.
class LoadedFile {
public:
    /// Opens the file; null on failure.
    using Open = std::function<std::shared_ptr<const FileReader>()>;

    /// Estimates until known is True, final afterwards.
    struct Facts {
        bool known = false;
        Measurement measurement;
        TrackTags tags;
    };

    explicit LoadedFile(Open open) : open_(std::move(open)) {}
    /// Waits for the disk, for callers without a user interface.
    explicit LoadedFile(const std::shared_ptr<const FileReader>& reader);
    explicit LoadedFile(const std::string& path) : LoadedFile(FileReader::open(path)) {}

    // --- any thread ---

    [[nodiscard]] bool readingHasBegun() const;
    /// Whether the file's kind is known.
    [[nodiscard]] bool kindIsKnown() const;
    /// The usual extension of files of this kind; empty for an unknown kind.
    [[nodiscard]] std::string extension() const;
    [[nodiscard]] Facts facts() const;
    [[nodiscard]] Measurement measurement() const;

    /// Waits for the file's kind, until 80 ms after loading. Returns whether it is known.
    [[nodiscard]] bool waitUntilKindIsKnown() const;
    /// Waits a few milliseconds for the facts, but not beyond 80 ms after loading. Returns whether
    /// waiting is over: the facts are known, or the caller has to do with the estimates.
    [[nodiscard]] bool waitIsOver() const;

    // --- decoder thread ---

    /// Opens the file and finds out its kind, at the first call. For a file that can't be opened,
    /// or is no MP3 file, the facts are known then, and empty.
    void read();
    /// Publishes what has been found out.
    void setFacts(Facts facts);

    // After read:
    [[nodiscard]] const std::shared_ptr<const FileReader>& reader() const { return reader_; }
    [[nodiscard]] const FileKind& kind() const { return kind_; }
    /// Null unless the file is an MP3 file.
    [[nodiscard]] FileMeasure* measure() { return measure_.get(); }
    /// Why a file without a measure can't be played.
    [[nodiscard]] Failure failure() const {
        return {reader_ ? Failure::Cause::notMp3 : Failure::Cause::notOpened, {}};
    }

private:
    enum class Reading { notBegun, begun, done };

    const Open open_;
    const std::chrono::steady_clock::time_point loadedAt_ = std::chrono::steady_clock::now();

    // Written by read alone.
    std::shared_ptr<const FileReader> reader_;
    FileKind kind_;
    std::unique_ptr<FileMeasure> measure_;

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Reading reading_ = Reading::notBegun; ///< guarded by mutex_, as all below
    std::string extension_;
    Facts facts_;
};

} // namespace zvonivec
