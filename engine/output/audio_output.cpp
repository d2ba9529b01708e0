#include "engine/output/audio_output.h"

#include "version.h"

#include <SDL.h>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <string>

namespace zvonivec {

namespace {

/// How a sound system is fed. Samples that it has can't be taken back, so a pause is heard after
/// the sum of both times at most.
struct Feeding {
    int period; ///< milliseconds of sound that it takes at a time
    int held;   ///< milliseconds that it still has then: enough to survive a busy machine
};

constexpr Feeding USUAL{.period = 45, .held = 45};

/// PulseAudio asks for more as soon as a quarter of its buffer has been played, and SDL answers
/// each request on its own. By default SDL makes the buffer as long as one period, so a period
/// takes four requests. A period as long as one request halves the wake-ups.
constexpr Feeding PULSE{.period = 18, .held = 72};

Feeding feedingOf(const char* driver) {
    return driver != nullptr && std::strcmp(driver, "pulseaudio") == 0 ? PULSE : USUAL;
}

/// Guards SDL's table of devices, which has no lock of its own. A hanging server delays the closing
/// of a device until after the next engine has opened another.
std::mutex sdlMutex;

bool setUpSdl() {
    SDL_SetMainReady();
    // SDL's event queue, which comes with audio, would otherwise catch SIGINT and SIGTERM.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_APP_NAME, "Zvonivec MP3 Player " ZVONIVEC_VERSION);
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Zvonivec MP3 Player " ZVONIVEC_VERSION);
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_ROLE, "music");
    return SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
}

} // namespace

AudioOutput::AudioOutput(SampleFeed& feed) : feed_(feed) {
    // SDL has no other way to set the latency. A value that the user has set stays.
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

std::optional<Failure> AudioOutput::open(int sampleRate, int channels) {
    assert(!isOpen() && sampleRate > 0 && (channels == 1 || channels == 2));
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
        Failure failure{Failure::Cause::noDevice, SDL_GetError()};
        lock.unlock();
        reset();
        return failure;
    }
    SDL_PauseAudioDevice(device_, 0);
    return std::nullopt;
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
    assert(!isOpen());
    if (ready_) {
        const std::lock_guard lock(sdlMutex);
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        ready_ = false;
    }
    SDL_TLSCleanup(); // SDL frees its data of a thread by itself only for threads that it made
}

} // namespace zvonivec
