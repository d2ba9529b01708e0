#include "engine/audio_output.h"

#include <SDL.h>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <string>

namespace zvonivec {

namespace {

/// How a sound system is fed. What has been handed to it can't be taken back, so both times
/// together are what a pause takes at most.
struct Feeding {
    int period; ///< milliseconds that it takes at a time
    int held;   ///< milliseconds that it still has then: enough to live through a busy machine
};

constexpr Feeding USUAL{.period = 45, .held = 45};

/// PulseAudio asks for a quarter of what it holds as soon as that is gone, and SDL answers each
/// question by itself. Left to itself SDL has as much held as it takes at a time, so that each
/// period is asked for in four pieces; periods of one piece halve the wake-ups.
constexpr Feeding PULSE{.period = 18, .held = 72};

Feeding feedingOf(const char* driver) {
    return driver != nullptr && std::strcmp(driver, "pulseaudio") == 0 ? PULSE : USUAL;
}

/// SDL keeps all devices in one table without a lock of its own. A device that a hanging server
/// holds up is still being closed when the next engine opens one.
std::mutex sdlMutex;

bool setUpSdl() {
    SDL_SetMainReady();
    // Interrupts are the program's business: SDL's event queue, which comes with audio, would
    // otherwise take SIGINT and SIGTERM.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_APP_NAME, "Zvonivec MP3 Player 0.0.7");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Zvonivec MP3 Player 0.0.7");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_ROLE, "music");
    return SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
}

} // namespace

AudioOutput::AudioOutput(SampleFeed& feed) : feed_(feed) {
    // SDL has no way to say it. Who has set it already knows why.
    SDL_setenv("PULSE_LATENCY_MSEC", std::to_string(PULSE.held).c_str(), 0);
}

AudioOutput::~AudioOutput() {
    close();
    reset();
}

void AudioOutput::fill(void* feed, std::uint8_t* target, int bytes) {
    // SDL's buffers are aligned for every sample type.
    static_cast<SampleFeed*>(feed)->fill(
        {reinterpret_cast<std::int16_t*>(target), static_cast<std::size_t>(bytes) / 2});
}

bool AudioOutput::open(int sampleRate, int channels) {
    std::unique_lock lock(sdlMutex);
    if (!ready_) {
        ready_ = setUpSdl();
    }
    if (ready_) {
        const Feeding feeding = feedingOf(SDL_GetCurrentAudioDriver());
        SDL_AudioSpec wanted = {};
        wanted.freq = sampleRate;
        wanted.format = AUDIO_S16SYS;
        wanted.channels = static_cast<Uint8>(channels);
        wanted.samples = static_cast<Uint16>(sampleRate * feeding.period / 1000);
        wanted.callback = &AudioOutput::fill;
        wanted.userdata = &feed_;
        SDL_AudioSpec obtained = {};
        device_ = SDL_OpenAudioDevice(nullptr, 0, &wanted, &obtained, 0);
        periodFrames_ = obtained.samples;
        heldFrames_ = periodFrames_ * feeding.held / feeding.period;
    }
    if (device_ == 0) {
        lock.unlock();
        reset();
        return false;
    }
    SDL_PauseAudioDevice(device_, 0);
    return true;
}

void AudioOutput::close() {
    if (device_ != 0) {
        const std::lock_guard lock(sdlMutex);
        SDL_CloseAudioDevice(device_);
        device_ = 0;
    }
}

bool AudioOutput::lost() const {
    return device_ != 0 && SDL_GetAudioDeviceStatus(device_) == SDL_AUDIO_STOPPED;
}

void AudioOutput::reset() {
    if (ready_) {
        const std::lock_guard lock(sdlMutex);
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        ready_ = false;
    }
    SDL_TLSCleanup(); // what SDL keeps for a thread that it hasn't made
}

} // namespace zvonivec
