// The system ends the program by signals.
#include "platform/end_requests.h"
#include "tests/window/end_test.h"

#include <csignal>

namespace zvonivec {
namespace {

class EndBySignal : public EndTest, public testing::WithParamInterface<int> {};

TEST_P(EndBySignal, EndsAsTheCloseButtonDoes) {
    const EndRequests requests([this] { player().CloseApplication(); });
    raise(GetParam());
    EXPECT_TRUE(player().Loaded()); // the signal handler only records the signal
    expectEnded();
}

INSTANTIATE_TEST_SUITE_P(Signals, EndBySignal, testing::Values(SIGTERM, SIGINT, SIGHUP));

} // namespace
} // namespace zvonivec
