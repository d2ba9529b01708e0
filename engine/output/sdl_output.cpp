#include "engine/output/sdl_output.h"

#include "version.h"

#include <SDL.h>
#include <cassert>
#include <chrono>
#include <cstddef>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;

/// Milliseconds of sound that the device takes at a time. SDL and the sound system hold about as
/// much besides, and nothing can take that back, so a pause is heard after the sum at most.
constexpr int PERIOD = 20;

/// Interval at which the device is checked: SDL doesn't report its loss.
constexpr auto CHECK_RHYTHM = 250ms;

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

SdlOutput::~SdlOutput() {
    close();
}

void SdlOutput::fill(void* output, std::uint8_t* target, int bytes) {
    auto& self = *static_cast<SdlOutput*>(output);
    // The device plays these after the period that it still holds.
    const std::uint64_t begin = self.feed_.deviceFrame();
    const auto held = static_cast<std::uint64_t>(self.periodFrames_);
    // SDL's buffers are aligned for every sample type.
    self.feed_.fill({reinterpret_cast<std::int16_t*>(target), static_cast<std::size_t>(bytes) / 2});
    self.feed_.setClock(begin > held ? begin - held : 0, SampleFeed::Clock::now(), begin >= held);
}

std::optional<Failure> SdlOutput::open(const AudioFormat& format,
                                       const std::function<bool()>& /*stop*/) {
    assert(device_ == 0 && format.sampleRate > 0);
    {
        const std::lock_guard lock(sdlMutex);
        ready_ = setUpSdl();
        if (ready_) {
            SDL_AudioSpec wanted = {};
            wanted.freq = format.sampleRate;
            wanted.format = AUDIO_S16SYS;
            wanted.channels = static_cast<Uint8>(format.channels);
            wanted.samples = static_cast<Uint16>(format.sampleRate * PERIOD / 1000);
            wanted.callback = &SdlOutput::fill;
            wanted.userdata = this;
            SDL_AudioSpec obtained = {};
            device_ = SDL_OpenAudioDevice(nullptr, 0, &wanted, &obtained, 0);
            periodFrames_ = obtained.samples;
        }
    }
    if (device_ == 0) {
        Failure failure{Failure::Cause::noDevice, SDL_GetError()};
        close();
        return failure;
    }
    return std::nullopt;
}

void SdlOutput::serve(const std::function<bool()>& stop) {
    SDL_PauseAudioDevice(device_, 0);
    while (!stop() && SDL_GetAudioDeviceStatus(device_) != SDL_AUDIO_STOPPED) {
        std::unique_lock lock(wakeMutex_);
        woken_.wait_for(lock, CHECK_RHYTHM, [this] { return wake_; });
        wake_ = false;
    }
}

void SdlOutput::close() {
    if (ready_) {
        const std::lock_guard lock(sdlMutex);
        if (device_ != 0) {
            SDL_CloseAudioDevice(device_);
            device_ = 0;
        }
        // The next open looks for sound servers anew.
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        ready_ = false;
    }
    SDL_TLSCleanup(); // SDL frees its data of a thread by itself only for threads that it made
}

void SdlOutput::wake() {
    const std::lock_guard lock(wakeMutex_);
    wake_ = true;
    woken_.notify_one();
}

} // namespace zvonivec
