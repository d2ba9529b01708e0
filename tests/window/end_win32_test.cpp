// How the system ends a program: by the session's messages.
#include "platform/end_requests.h"
#include "tests/window/end_test.h"

#include <windows.h>

namespace zvonivec {
namespace {

using EndBySession = EndTest;

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
