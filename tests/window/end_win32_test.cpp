// The system ends the program by messages of the session.
#include "platform/end_requests.h"
#include "tests/window/end_test.h"

#include <windows.h>

namespace zvonivec {
namespace {

using EndBySession = EndTest;

TEST_F(EndBySession, IsAcceptedAndUnloadsTheWindowsBeforeTheAnswer) {
    const EndRequests requests([this] { player().CloseApplication(); });
    const auto tell = [this](UINT message, bool ends) {
        return SendMessageW(reinterpret_cast<HWND>(player().hWnd()), message, ends ? TRUE : FALSE,
                            0);
    };
    EXPECT_NE(tell(WM_QUERYENDSESSION, false), FALSE);
    EXPECT_TRUE(player().Loaded());
    tell(WM_ENDSESSION, false); // another program has refused
    EXPECT_TRUE(player().Loaded());
    tell(WM_ENDSESSION, true);
    EXPECT_FALSE(player().Loaded()); // the process may be killed from here on
    expectEnded();
}

} // namespace
} // namespace zvonivec
