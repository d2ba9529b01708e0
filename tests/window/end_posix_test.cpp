// How the system ends a program: by signals.
#include "platform/end_requests.h"
#include "tests/window/player_test.h"

#include <csignal>

namespace zvonivec {
namespace {

/// Ended as the close button does.
class EndBySignal : public PlayerTest, public testing::WithParamInterface<int> {
protected:
    void SetUp() override {
        start();
        open("a.mp3");
    }
    void expectEnded() {
        EXPECT_TRUE(serveUntil([this] { return !player().Loaded(); }));
        EXPECT_FALSE(player().Popup().Loaded());
        EXPECT_EQ(engine().URL(), "");
    }
};

TEST_P(EndBySignal, EndsAsTheCloseButtonDoes) {
    const EndRequests requests([this] { player().CloseApplication(); });
    raise(GetParam());
    EXPECT_TRUE(player().Loaded()); // the handler itself only takes note
    expectEnded();
}

INSTANTIATE_TEST_SUITE_P(Signals, EndBySignal, testing::Values(SIGTERM, SIGINT, SIGHUP));

} // namespace
} // namespace zvonivec
