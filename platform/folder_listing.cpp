#include "platform/folder_listing.h"

#include <chrono>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace zvonivec {

namespace fs = std::filesystem;

namespace {

/// How long entries are collected before they are shown for the first time. The time doubles with
/// each further event.
constexpr auto FIRST_WAIT = std::chrono::milliseconds(100);

std::string bytesOf(const fs::path& name) {
    const std::u8string text = name.u8string(); // on POSIX systems the bytes stay as they are
    return {text.begin(), text.end()};
}

std::int64_t secondsSince1970(fs::file_time_type time) {
    const auto system = std::chrono::file_clock::to_sys(time);
    return std::chrono::floor<std::chrono::seconds>(system.time_since_epoch()).count();
}

/// Returns the entry of a folder, or an entry without a name for what isn't listed.
FolderListing::Entry entryOf(const fs::directory_entry& found) {
    FolderListing::Entry entry{.name = bytesOf(found.path().filename())};
    std::error_code error;
    entry.isFolder = found.is_directory(error);
    if (entry.name.starts_with('.') || (!entry.isFolder && !found.is_regular_file(error))) {
        return {};
    }
    const std::uintmax_t size = entry.isFolder ? 0 : found.file_size(error);
    entry.size = error ? 0 : size;
    const fs::file_time_type time = found.last_write_time(error);
    entry.modified = error ? 0 : secondsSince1970(time);
    return entry;
}

} // namespace

/// What the two threads share. The listing's thread may outlive the object.
struct FolderListing::Shared {
    Events events; ///< called on the user-interface thread alone
    Post post;
    std::mutex mutex;
    bool wanted = true; ///< guarded by mutex; written on the user-interface thread

    bool isWanted() {
        const std::lock_guard lock(mutex);
        return wanted;
    }

    /// Lists a folder on the calling thread.
    static void list(const std::shared_ptr<Shared>& shared, const fs::path& path);

    /// Posts a function, unless the listing isn't wanted any more by then.
    template<class Function>
    static void postIfWanted(const std::shared_ptr<Shared>& shared, Function function) {
        // Posted under the lock: the program may end as soon as the listing isn't wanted.
        const std::lock_guard lock(shared->mutex);
        if (shared->wanted) {
            shared->post([shared, function = std::move(function)]() mutable {
                if (shared->wanted) {
                    function(*shared);
                }
            });
        }
    }
};

void FolderListing::Shared::list(const std::shared_ptr<Shared>& shared, const fs::path& path) {
    const auto end = [&shared](End how) {
        postIfWanted(shared, [how](Shared& to) { to.events.ended(how); });
    };
    std::vector<Entry> batch;
    const auto sendBatch = [&] {
        postIfWanted(shared, [sent = std::exchange(batch, {})](Shared& to) mutable {
            to.events.entries(std::move(sent));
        });
    };
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::is_directory(status)) {
        end(fs::exists(status) ? End::file : End::nothing);
        return;
    }
    auto wait = FIRST_WAIT;
    auto next = std::chrono::steady_clock::now() + wait;
    fs::directory_iterator place(path, error);
    for (; !error && place != fs::directory_iterator(); place.increment(error)) {
        Entry entry = entryOf(*place);
        if (!entry.name.empty()) {
            batch.push_back(std::move(entry));
        }
        if (std::chrono::steady_clock::now() >= next) {
            if (!shared->isWanted()) {
                return;
            }
            sendBatch();
            wait *= 2;
            next = std::chrono::steady_clock::now() + wait;
        }
    }
    sendBatch();
    end(error ? End::unreadable : End::folder);
}

FolderListing::FolderListing(const std::string& path, Events events, Post post)
    : shared_(std::make_shared<Shared>()) {
    shared_->events = std::move(events);
    shared_->post = std::move(post);
    const fs::path folder(std::u8string(path.begin(), path.end()));
    try {
        std::thread([shared = shared_, folder] { Shared::list(shared, folder); }).detach();
    } catch (const std::system_error&) {
        Shared::list(shared_, folder); // no thread to be had
    }
}

FolderListing::~FolderListing() {
    const std::lock_guard lock(shared_->mutex);
    shared_->wanted = false;
}

} // namespace zvonivec
