#include "playback/engine/audio_output.h"

#include <SDL.h>
#include <cstddef>
#include <mutex>

namespace zvonivec {

namespace {

/// About 45 ms: short enough for prompt commands, long enough to live through a busy machine.
int periodFor(int sampleRate) {
    return sampleRate * 45 / 1000 / 64 * 64;
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
        SDL_AudioSpec wanted = {};
        wanted.freq = sampleRate;
        wanted.format = AUDIO_S16SYS;
        wanted.channels = static_cast<Uint8>(channels);
        wanted.samples = static_cast<Uint16>(periodFor(sampleRate));
        wanted.callback = &AudioOutput::fill;
        wanted.userdata = &feed_;
        SDL_AudioSpec obtained = {};
        device_ = SDL_OpenAudioDevice(nullptr, 0, &wanted, &obtained, 0);
        periodFrames_ = obtained.samples;
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
