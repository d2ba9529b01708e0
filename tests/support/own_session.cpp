// Puts a test program without a display of its own, and all processes that its tests start, into a
// private session before the first test. To be added to the program's sources.
#include "tests/support/private_session.h"

#include <gtest/gtest.h>
#include <memory>

namespace support {

namespace {

class OwnSession : public testing::Environment {
public:
    void SetUp() override {
        folder_ = std::make_unique<TemporaryFolder>();
        setInThisProcess(privateSession(folder_->path()));
    }
    void TearDown() override { folder_.reset(); }

private:
    std::unique_ptr<TemporaryFolder> folder_;
};

// GoogleTest deletes the object.
[[maybe_unused]] const testing::Environment* const OWN_SESSION =
    testing::AddGlobalTestEnvironment(new OwnSession);

} // namespace

} // namespace support
