// Folders that are listed beside the user-interface thread.
#include "platform/folder_listing.h"

#include "tests/support/process.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <gtest/gtest.h>
#include <mutex>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zvonivec {
namespace {

/// Functions that wait for the thread of the test, which stands for the user interface's.
class Queue {
public:
    FolderListing::Post post() {
        return [this](std::function<void()> function) {
            const std::lock_guard lock(mutex_);
            functions_.push_back(std::move(function));
        };
    }
    void serve() {
        std::unique_lock lock(mutex_);
        while (!functions_.empty()) {
            const std::function<void()> first = std::move(functions_.front());
            functions_.pop_front();
            lock.unlock();
            first();
            lock.lock();
        }
    }

private:
    std::mutex mutex_;
    std::deque<std::function<void()>> functions_; ///< guarded by mutex_
};

class FolderListingTest : public testing::Test {
protected:
    std::vector<std::string> list(const std::string& path) {
        names_.clear();
        end_.reset();
        const FolderListing listing(path, events(), queue_.post());
        EXPECT_TRUE(support::waitUntil([this] {
            queue_.serve();
            return end_.has_value();
        }));
        std::ranges::sort(names_);
        return names_;
    }
    FolderListing::Events events() {
        return {.entries =
                    [this](const std::vector<FolderListing::Entry>& entries) {
                        for (const FolderListing::Entry& entry : entries) {
                            names_.push_back(entry.name + (entry.isFolder ? "/" : ""));
                        }
                    },
                .ended = [this](FolderListing::End end) { end_ = end; }};
    }

    support::TemporaryFolder folder_;
    Queue queue_;
    std::vector<std::string> names_;
    std::optional<FolderListing::End> end_;
};

TEST_F(FolderListingTest, GivesFilesAndFoldersInAnyBytes) {
    support::writeFile(folder_.file("a"), "x");
    support::writeFile(folder_.file(".b"), "x");
    ASSERT_EQ(mkdir((folder_.path() + "/\xE8").c_str(), 0700), 0);
    ASSERT_EQ(mkfifo(folder_.file("pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("/no/such/file", folder_.file("nothing"));
    std::filesystem::create_symlink("pipe", folder_.file("link"));
    EXPECT_EQ(list(folder_.path()), (std::vector<std::string>{"a", "\xE8/"}));
    EXPECT_EQ(end_, FolderListing::End::folder);
    EXPECT_EQ(list(folder_.file("a")), std::vector<std::string>{});
    EXPECT_EQ(end_, FolderListing::End::file);
    list(folder_.file("pipe"));
    EXPECT_EQ(end_, FolderListing::End::file);
    list(folder_.file("c"));
    EXPECT_EQ(end_, FolderListing::End::nothing);
}

TEST_F(FolderListingTest, GivesNothingAfterItsEnd) {
    support::writeFile(folder_.file("a"), "x");
    for (int i = 0; i < 200; ++i) {
        { const FolderListing listing(folder_.path(), events(), queue_.post()); }
        queue_.serve();
    }
    EXPECT_EQ(names_, std::vector<std::string>{});
    EXPECT_EQ(end_, std::nullopt);
}

TEST_F(FolderListingTest, CannotReadAFolderWithoutDescriptors) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "The sanitizers need descriptors for their own checks";
#endif
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit none{0, usual.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    list(folder_.path());
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
    EXPECT_EQ(end_, FolderListing::End::unreadable);
}

TEST_F(FolderListingTest, ListsWithoutThreads) {
    support::writeFile(folder_.file("a"), "x");
    std::filesystem::permissions(folder_.path(), std::filesystem::perms(0755));
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobodyElse = 61234; // root may have any number of threads
        const rlimit none{0, 0};
        if (setrlimit(RLIMIT_NPROC, &none) != 0 || (geteuid() == 0 && setuid(nobodyElse) != 0)) {
            _exit(2);
        }
        _exit(list(folder_.path()) == std::vector<std::string>{"a"} ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace zvonivec
