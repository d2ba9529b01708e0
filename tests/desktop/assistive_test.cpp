// The whole player, used through assistive technology alone.
#include "tests/desktop/playing_test.h"
#include "tests/support/message_bus.h"

namespace support {

namespace {

class AssistiveTest : public PlayingTest {
protected:
    [[nodiscard]] Process::Environment withBus() const {
        Process::Environment all = environment();
        const Process::Environment bus = bus_.environment();
        all.insert(all.end(), bus.begin(), bus.end());
        all.emplace_back("NO_AT_BRIDGE", "");
        return all;
    }

    MessageBus bus_{environment()};
};

TEST_F(AssistiveTest, EverythingCanBeDoneAndIsReadBack) {
    ASSERT_TRUE(bus_.running());
    player_.reset(); // knows no bus
    player_ = std::make_unique<Player>(display_, folder_.file("program"), withBus());
    ASSERT_TRUE(player_->waitUntilShown()) << player_->messages();
    const std::string file = folder_.file("track.mp3");
    (void)makeFile(file, 20);
    Process::Options options;
    options.environment = withBus();
    options.errorFile = folder_.file("assistive-messages");
    const int result = run({"/usr/bin/python3", ASSISTIVE_PROGRAM, file, player::TITLE}, options,
                           std::chrono::seconds(100));
    EXPECT_EQ(result, 0) << readFile(options.errorFile);
    EXPECT_EQ(player_->process().waitForExit(), 0);
}

} // namespace

} // namespace support
