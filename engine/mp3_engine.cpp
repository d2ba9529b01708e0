// The engine as the user-interface thread sees it: its state, and those events of the decoder
// thread that are still true when they arrive.

#include "engine/mp3_engine.h"

#include "engine/decoder_thread.h"
#include "engine/loaded_file.h"
#include "engine/output/gain.h"
#include "engine/time_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// How long the engine's end waits for its threads.
constexpr auto END_PATIENCE = 500ms;

/// The name of a file without its folder, for mixers.
std::string nameOfFile(const std::string& path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

class Mp3Engine final : public PlayerEngine,
                        private PlayerEngine::Controls,
                        private PlayerEngine::Media,
                        private PlayerEngine::Settings {
public:
    Mp3Engine(PostToUserInterface post, OpenFile open);
    Mp3Engine(const Mp3Engine&) = delete;
    Mp3Engine& operator=(const Mp3Engine&) = delete;
    ~Mp3Engine() override;

    [[nodiscard]] std::string URL() const override { return url_; }
    void setURL(const std::string& path) override;
    [[nodiscard]] PlayState playState() const override { return state_; }
    void setEnableContextMenu(bool) override {}
    [[nodiscard]] PlayerEngine::Controls& controls() override { return *this; }
    [[nodiscard]] PlayerEngine::Media& currentMedia() override { return *this; }
    [[nodiscard]] PlayerEngine::Settings& settings() override { return *this; }

private:
    void play() override;
    void pause() override;
    void stop() override;
    [[nodiscard]] double currentPosition() const override;
    void setCurrentPosition(double seconds) override;
    [[nodiscard]] std::string currentPositionString() const override;

    [[nodiscard]] double duration() const override;
    [[nodiscard]] std::string durationString() const override;
    [[nodiscard]] std::string getItemInfo(std::string_view name) const override;
    [[nodiscard]] bool isReadOnlyItem(std::string_view name) const override;

    [[nodiscard]] std::int32_t volume() const override { return volume_; }
    void setVolume(std::int32_t percent) override;
    [[nodiscard]] bool autoStart() const override { return autoStart_; }
    void setAutoStart(bool on) override { autoStart_ = on; }

    /// Returns a function of any thread that posts a call of a function of the engine's.
    template<class Function>
    auto posted(Function function);
    std::shared_ptr<DecoderThread> newThread();
    void load();
    bool loadInThread();
    void runEnded(std::uint64_t run);
    void runFailed(std::uint64_t run);
    void fileLearnt(const std::weak_ptr<LoadedFile>& file);
    bool raise(PlayState state);
    void rest(double position);

    /// Reset when the engine is destroyed. Posted functions hold it weakly, and so notice that the
    /// engine is gone. Used on the user-interface thread alone.
    std::shared_ptr<Mp3Engine*> self_ = std::make_shared<Mp3Engine*>(this);

    const PostToUserInterface post_; ///< called on the decoder thread
    const OpenFile open_;

    std::string url_;
    std::shared_ptr<LoadedFile> file_;
    PlayState state_ = PlayState::undefined;
    std::int32_t volume_ = 50;
    bool autoStart_ = true;

    /// Number of the run. Changes with every command that makes earlier events untrue.
    std::uint64_t run_ = 1;
    /// The stream of the feed that run_ plays.
    std::uint64_t stream_ = 0;
    /// The track has come to its natural end and has not been moved since. The device may still be
    /// playing its last samples.
    bool ended_ = false;
    /// play continues after a pause; otherwise it starts at position_.
    bool resumes_ = false;
    /// The position at rest. While playing, the last position that was returned: no later one may
    /// be below it.
    mutable double position_ = 0;
    /// A caller had to do without something that is known later: the file's kind or exact facts.
    mutable bool owes_ = false;

    std::shared_ptr<DecoderThread> thread_;
};

Mp3Engine::Mp3Engine(PostToUserInterface post, OpenFile open)
    : post_(std::move(post)), open_(std::move(open)), thread_(newThread()) {}

Mp3Engine::~Mp3Engine() {
    self_.reset();
    thread_->allow(0);
    thread_->end(END_PATIENCE);
}

template<class Function>
auto Mp3Engine::posted(Function function) {
    return [post = post_, function, weak = std::weak_ptr(self_)](const auto&... arguments) {
        if (!post) {
            return;
        }
        post([function, weak, arguments...] {
            // Released before the call, so that a handler can destroy the engine.
            auto self = weak.lock();
            Mp3Engine* const engine = self ? *self : nullptr;
            self.reset();
            if (engine != nullptr) {
                (engine->*function)(arguments...);
            }
        });
    };
}

std::shared_ptr<DecoderThread> Mp3Engine::newThread() {
    auto thread = DecoderThread::create(
        {.ended = posted(&Mp3Engine::runEnded),
         .failed = [failed = posted(&Mp3Engine::runFailed)](
                       std::uint64_t run, const Failure& /*failure*/) { failed(run); },
         .learnt =
             [learnt = posted(&Mp3Engine::fileLearnt)](const std::shared_ptr<LoadedFile>& file) {
                 // Held weakly: the file is closed on the decoder thread.
                 learnt(std::weak_ptr(file));
             }});
    thread->setGain(gainOfVolume(volume_));
    return thread;
}

void Mp3Engine::setURL(const std::string& path) {
    ++run_;
    rest(0);
    ended_ = false;
    url_ = path;
    state_ = path.empty() ? PlayState::undefined : PlayState::ready;
    load();
    if (autoStart_) {
        play();
    }
}

/// Has the decoder thread read the file, and waits a moment for its kind.
void Mp3Engine::load() {
    owes_ = false;
    if (!loadInThread()) {
        return;
    }
    owes_ = !file_->waitUntilKindIsKnown();
    if (!file_->readingHasBegun()) {
        // The disk of an earlier file holds the thread, which is left behind with that file.
        thread_->end(0ms);
        thread_ = newThread();
        loadInThread();
    }
}

/// Returns whether the thread reads a file. Where no thread is to be had, the file is read here.
bool Mp3Engine::loadInThread() {
    file_ = url_.empty()
                ? nullptr
                : std::make_shared<LoadedFile>([open = open_, path = url_] { return open(path); });
    const bool works = thread_->load(file_, nameOfFile(url_));
    if (file_ && !works) {
        file_->read();
    }
    return file_ && works;
}

void Mp3Engine::play() {
    if (!file_ || state_ == PlayState::playing) {
        return;
    }
    if (resumes_) {
        thread_->resume();
    } else if (ended_) {
        thread_->restart(++run_);
    } else {
        thread_->start(++run_, ++stream_, position_);
    }
    resumes_ = false;
    ended_ = false;
    thread_->allow(stream_);
    state_ = PlayState::playing;
    raise(PlayState::playing);
}

void Mp3Engine::pause() {
    if (state_ != PlayState::playing) {
        return;
    }
    thread_->allow(0);
    thread_->pause();
    resumes_ = true;
    state_ = PlayState::paused;
    raise(PlayState::paused);
}

void Mp3Engine::stop() {
    ++run_;
    rest(0);
    state_ = file_ ? PlayState::stopped : PlayState::undefined;
    raise(PlayState::stopped);
}

/// Silences the track and moves it to a position. The last samples of a track that has ended are
/// still heard.
void Mp3Engine::rest(double position) {
    if (!ended_) {
        thread_->allow(0);
        thread_->stop();
    }
    resumes_ = false;
    position_ = position;
}

double Mp3Engine::currentPosition() const {
    if (state_ == PlayState::playing || resumes_) {
        if (const auto heard = thread_->position(run_)) {
            position_ = std::max(position_, *heard);
        }
    }
    return position_;
}

void Mp3Engine::setCurrentPosition(double seconds) {
    if (!file_ || std::isnan(seconds)) {
        return;
    }
    const bool known = file_->facts().known;
    position_ = std::max(0.0, known ? std::min(seconds, duration()) : seconds);
    ++run_;
    ended_ = false;
    resumes_ = false;
    if (state_ == PlayState::playing) {
        thread_->start(run_, ++stream_, position_);
        thread_->allow(stream_);
    }
}

std::string Mp3Engine::currentPositionString() const {
    return timeText(currentPosition());
}

double Mp3Engine::duration() const {
    return file_ ? file_->measurement().seconds : 0;
}

std::string Mp3Engine::durationString() const {
    return timeText(duration());
}

std::string Mp3Engine::getItemInfo(std::string_view name) const {
    if (!file_) {
        return {};
    }
    if (name == "Filetype") {
        return file_->extension();
    }
    const LoadedFile::Facts facts = file_->facts();
    if (name == "Bitrate") {
        return facts.measurement.bitRate > 0 ? std::to_string(facts.measurement.bitRate)
                                             : std::string();
    }
    using Tag = std::pair<std::string_view, std::string TrackTags::*>;
    static constexpr std::array<Tag, 6> tags = {{{"Author", &TrackTags::author},
                                                 {"Title", &TrackTags::title},
                                                 {"Album", &TrackTags::album},
                                                 {"Description", &TrackTags::description},
                                                 {"Genre", &TrackTags::genre},
                                                 {"WM/Year", &TrackTags::year}}};
    const auto* const found =
        std::ranges::find(tags, name, [](const Tag& tag) { return tag.first; });
    return found == tags.end() ? std::string() : facts.tags.*found->second;
}

bool Mp3Engine::isReadOnlyItem(std::string_view name) const {
    if (!file_) {
        return true;
    }
    if (name == "Filetype") {
        return file_->kindIsKnown();
    }
    if (name != "Bitrate") {
        return file_->facts().known;
    }
    const bool over = file_->waitIsOver();
    owes_ = owes_ || (over && !file_->facts().known);
    return over;
}

void Mp3Engine::setVolume(std::int32_t percent) {
    volume_ = std::clamp(percent, 0, 100);
    thread_->setGain(gainOfVolume(volume_));
}

void Mp3Engine::runEnded(std::uint64_t run) {
    // An end that was reported just before a pause is reported again after the pause.
    if (run != run_ || state_ != PlayState::playing) {
        return;
    }
    ++run_;
    ended_ = true;
    position_ = 0;
    for (const PlayState state :
         {PlayState::mediaEnded, PlayState::transitioning, PlayState::stopped}) {
        state_ = state;
        if (!raise(state) || state_ != state) {
            return; // the handler has given a command or destroyed the engine
        }
    }
}

void Mp3Engine::runFailed(std::uint64_t run) {
    if (run != run_) {
        return;
    }
    ++run_;
    rest(0);
    state_ = PlayState::stopped;
    if (const auto handler = MediaError) {
        handler();
    }
}

void Mp3Engine::fileLearnt(const std::weak_ptr<LoadedFile>& file) {
    const bool ours = file_ && file.lock() == file_;
    if (!ours || !owes_) {
        return;
    }
    if (const auto handler = MediaChange) {
        handler();
    }
}

/// Raises PlayStateChange. Returns False when the handler has destroyed the engine.
bool Mp3Engine::raise(PlayState state) {
    const std::weak_ptr<Mp3Engine*> alive = self_;
    if (const auto handler = PlayStateChange) {
        handler(state);
    }
    return !alive.expired();
}

} // namespace

std::unique_ptr<PlayerEngine> createMp3Engine(PostToUserInterface post, OpenFile open) {
    return std::make_unique<Mp3Engine>(std::move(post), std::move(open));
}

std::unique_ptr<PlayerEngine> createPlayerEngine(PostToUserInterface post) {
    return createMp3Engine(std::move(post), &FileReader::open);
}

} // namespace zvonivec
