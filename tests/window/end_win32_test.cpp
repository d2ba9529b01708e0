// How the system ends a program: by the session's messages.
#include "platform/end_requests.h"
#include "tests/window/player_test.h"

#include <windows.h>

namespace zvonivec {
namespace {

/// Ended as the close button does.
class EndBySession : public PlayerTest {
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

TEST_F(EndBySession, IsAgreedToAndEndsBeforeTheAnswer) {
    const EndRequests requests([this] { player().CloseApplication(); });
    const auto tell = [this](UINT message, bool ends) {
        return SendMessageW(reinterpret_cast<HWND>(player().hWnd()), message, ends ? TRUE : FALSE,
                            0);
    };
    EXPECT_NE(tell(WM_QUERYENDSESSION, false), FALSE);
    EXPECT_TRUE(player().Loaded());
    tell(WM_ENDSESSION, false); // another program has said no
    EXPECT_TRUE(player().Loaded());
    tell(WM_ENDSESSION, true);
    EXPECT_FALSE(player().Loaded()); // the process may be killed now
    expectEnded();
}

} // namespace
} // namespace zvonivec
