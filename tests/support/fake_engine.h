// An engine that plays nothing. The test decides what it knows about files and when its events
// come.
#pragma once

#include "playback/PlayerEngine.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace support {

class FakeEngine : public zvonivec::PlayerEngine {
public:
    using PlayState = zvonivec::PlayState;
    using Attributes = std::map<std::string, std::string, std::less<>>;

    struct Track {
        Attributes attributes{{"Filetype", "mp3"}, {"Bitrate", "128000"}};
        double duration = 180;
        std::string durationString = "03:00";
    };

    std::map<std::string, Track> tracks; ///< by path; for any other path the file's kind is unknown
    double position = 0;
    std::string positionString = "00:00";
    bool autoStartOn = true;
    bool contextMenuOn = true;
    std::vector<std::string> calls;     ///< names of the calls, in order
    int questionsForBitrate = 0;        ///< number of calls of isReadOnlyItem("Bitrate")
    int answersUntilBitrateIsKnown = 1; ///< number of the first call that returns true
    bool kindIsKnown = true;            ///< "Filetype" is known
    /// Called with the name of each call, before the call has an effect.
    std::function<void(const std::string&)> During;

    // Events that an engine causes by itself.
    void reachEnd() {
        state_ = PlayState::stopped;
        position = 0;
        raise();
    }
    /// Learns more of the loaded file.
    void learn() {
        if (MediaChange) {
            MediaChange();
        }
    }
    void fail() {
        if (MediaError) {
            MediaError();
        }
    }

    [[nodiscard]] std::string URL() const override { return url_; }
    void setURL(const std::string& path) override {
        note("setURL " + path);
        url_ = path;
        position = 0;
        state_ = path.empty() ? PlayState::undefined : PlayState::ready;
    }
    [[nodiscard]] PlayState playState() const override { return state_; }
    void setEnableContextMenu(bool on) override { contextMenuOn = on; }
    Controls& controls() override { return controls_; }
    Media& currentMedia() override { return media_; }
    Settings& settings() override { return settings_; }

    [[nodiscard]] std::ptrdiff_t count(const std::string& call) const {
        return std::count(calls.begin(), calls.end(), call);
    }

private:
    struct FakeControls : Controls {
        explicit FakeControls(FakeEngine& owner) : engine(owner) {}
        void play() override {
            engine.note("play");
            if (!engine.url_.empty()) {
                engine.state_ = PlayState::playing;
            }
        }
        void pause() override {
            engine.note("pause");
            if (engine.state_ == PlayState::playing) {
                engine.state_ = PlayState::paused;
            }
        }
        void stop() override {
            engine.note("stop");
            if (!engine.url_.empty()) {
                engine.state_ = PlayState::stopped;
            }
            engine.position = 0;
            engine.raise(PlayState::stopped);
        }
        [[nodiscard]] double currentPosition() const override { return engine.position; }
        void setCurrentPosition(double seconds) override {
            engine.note("seek " + std::to_string(seconds));
            engine.position = seconds;
        }
        [[nodiscard]] std::string currentPositionString() const override {
            return engine.positionString;
        }
        FakeEngine& engine;
    };

    struct FakeMedia : Media {
        explicit FakeMedia(FakeEngine& owner) : engine(owner) {}
        [[nodiscard]] const Track& track() const {
            static const Track unknown{.attributes = {}, .duration = 0, .durationString = "00:00"};
            const auto found = engine.tracks.find(engine.url_);
            return found == engine.tracks.end() ? unknown : found->second;
        }
        [[nodiscard]] double duration() const override { return track().duration; }
        [[nodiscard]] std::string durationString() const override {
            engine.note("durationString");
            return track().durationString;
        }
        [[nodiscard]] std::string getItemInfo(std::string_view name) const override {
            engine.note("getItemInfo " + std::string(name));
            const Attributes& attributes = track().attributes;
            const auto found = attributes.find(name);
            const bool hidden = name == "Filetype" && !engine.kindIsKnown;
            return found == attributes.end() || hidden ? std::string() : found->second;
        }
        [[nodiscard]] bool isReadOnlyItem(std::string_view name) const override {
            if (name == "Filetype") {
                return engine.kindIsKnown;
            }
            engine.note("isReadOnlyItem " + std::string(name));
            return name != "Bitrate" ||
                   ++engine.questionsForBitrate >= engine.answersUntilBitrateIsKnown;
        }
        FakeEngine& engine;
    };

    struct FakeSettings : Settings {
        explicit FakeSettings(FakeEngine& owner) : engine(owner) {}
        [[nodiscard]] std::int32_t volume() const override { return engine.volume_; }
        void setVolume(std::int32_t percent) override {
            engine.volume_ = std::clamp(percent, 0, 100);
        }
        [[nodiscard]] bool autoStart() const override { return engine.autoStartOn; }
        void setAutoStart(bool on) override { engine.autoStartOn = on; }
        FakeEngine& engine;
    };

    void note(const std::string& call) {
        calls.push_back(call);
        if (During) {
            During(call);
        }
    }
    void raise() { raise(state_); }
    void raise(PlayState state) const {
        if (PlayStateChange) {
            PlayStateChange(state);
        }
    }

    std::string url_;
    PlayState state_ = PlayState::undefined;
    std::int32_t volume_ = 50;
    FakeControls controls_{*this};
    FakeMedia media_{*this};
    FakeSettings settings_{*this};
};

} // namespace support
