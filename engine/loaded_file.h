// The file that the engine has loaded, and what is known of it.
#pragma once

#include "engine/file_kind.h"
#include "engine/file_measure.h"
#include "engine/file_reader.h"
#include "engine/tags.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace zvonivec {

/// Made on the user-interface thread, measured on the decoder thread, read on both.
class LoadedFile {
public:
    /// What is known; everything is final once known is True.
    struct Facts {
        bool known = false;
        Measurement measurement;
        TrackTags tags;
    };

    /// Finds out a file's kind. One that couldn't be opened (null), or is no MP3 file, is known at
    /// once: nothing is known of it.
    explicit LoadedFile(std::shared_ptr<const FileReader> reader);
    explicit LoadedFile(const std::string& path) : LoadedFile(FileReader::open(path)) {}

    [[nodiscard]] const std::shared_ptr<const FileReader>& reader() const { return reader_; }
    [[nodiscard]] const FileKind& kind() const { return kind_; }

    /// Null unless the file is an MP3 file. For the decoder thread alone.
    [[nodiscard]] FileMeasure* measure() { return measure_.get(); }

    /// Decoder thread: makes facts public.
    void setFacts(Facts facts);

    [[nodiscard]] Facts facts() const;
    [[nodiscard]] Measurement measurement() const;

    /// Waits a little for the facts to be known. True when they are, and also once the file has
    /// been loaded for so long that the estimates must do.
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
