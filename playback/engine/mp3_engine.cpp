#include "playback/engine/PlayerEngine.h"

#include <algorithm>

namespace zvonivec {

namespace {

class Mp3Engine final : public PlayerEngine,
                        private PlayerEngine::Controls,
                        private PlayerEngine::Media,
                        private PlayerEngine::Settings {
public:
    [[nodiscard]] std::string URL() const override { return url_; }
    void setURL(const std::string& path) override {
        url_ = path;
        state_ = path.empty() ? PlayState::undefined : PlayState::ready;
    }
    [[nodiscard]] PlayState playState() const override { return state_; }
    void setEnableContextMenu(bool) override {}
    [[nodiscard]] PlayerEngine::Controls& controls() override { return *this; }
    [[nodiscard]] PlayerEngine::Media& currentMedia() override { return *this; }
    [[nodiscard]] PlayerEngine::Settings& settings() override { return *this; }

private:
    void play() override {}
    void pause() override {}
    void stop() override {
        if (!url_.empty()) {
            state_ = PlayState::stopped;
        }
        if (PlayStateChange) {
            PlayStateChange(PlayState::stopped);
        }
    }
    [[nodiscard]] double currentPosition() const override { return 0; }
    void setCurrentPosition(double) override {}
    [[nodiscard]] std::string currentPositionString() const override { return "00:00"; }

    [[nodiscard]] double duration() const override { return 0; }
    [[nodiscard]] std::string durationString() const override { return "00:00"; }
    [[nodiscard]] std::string getItemInfo(std::string_view) const override { return {}; }
    [[nodiscard]] bool isReadOnlyItem(std::string_view) const override { return true; }

    [[nodiscard]] std::int32_t volume() const override { return volume_; }
    void setVolume(std::int32_t percent) override { volume_ = std::clamp(percent, 0, 100); }
    [[nodiscard]] bool autoStart() const override { return autoStart_; }
    void setAutoStart(bool on) override { autoStart_ = on; }

    std::string url_;
    PlayState state_ = PlayState::undefined;
    std::int32_t volume_ = 50;
    bool autoStart_ = true;
};

} // namespace

std::unique_ptr<PlayerEngine> createPlayerEngine([[maybe_unused]] PostToUserInterface post) {
    return std::make_unique<Mp3Engine>();
}

} // namespace zvonivec
