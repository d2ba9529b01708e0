#include "tests/support/watched_player.h"

#include "tests/desktop/player_window.h"

#include <filesystem>
#include <sstream>

namespace support {

namespace {

/// Whether a settings file holds what the player writes, each value within its range.
std::string judgeSettings(const std::string& text) {
    struct Value {
        const char* name;
        long least;
        long most;
    };
    static constexpr Value values[] = {{"Left", -600000, 600000},
                                       {"Top", -600000, 600000},
                                       {"OnTop", -1, 1},
                                       {"Repeat", 0, 1},
                                       {"Volume", 0, 100}};
    std::istringstream lines(text);
    std::string line;
    int found = 0;
    while (std::getline(lines, line)) {
        for (const Value& value : values) {
            const std::string start = value.name + std::string("=");
            if (!line.starts_with(start)) {
                continue;
            }
            ++found;
            char* end = nullptr;
            const long number = std::strtol(line.c_str() + start.size(), &end, 10);
            if (*end != '\r' || number < value.least || number > value.most) {
                return "the settings hold \"" + line + "\"";
            }
        }
    }
    return text.empty() ||
                   (text.starts_with("[General]\r\n") && found <= 5 && text.ends_with("\r\n"))
               ? ""
               : "the settings are \"" + text + "\"";
}

} // namespace

WatchedPlayer::WatchedPlayer(const Display& display, const std::string& program,
                             Process::Environment environment)
    : display_(&display), question_(display), program_(folder_.file("zvonivec")),
      environment_(std::move(environment)) {
    std::filesystem::copy_file(program, program_);
}

WatchedPlayer::~WatchedPlayer() {
    process_.terminate();
}

bool WatchedPlayer::start() {
    process_ = Process({program_}, {.environment = environment_,
                                    .outputFile = {},
                                    .errorFile = folder_.file("messages"),
                                    .directory = "/"});
    return waitUntil([this] { return mainWindow().has_value() || !process_.running(); },
                     std::chrono::seconds(60)) &&
           process_.running();
}

std::vector<Window> WatchedPlayer::windows() const {
    std::vector<Window> ours = titledWindows(*display_);
    std::erase_if(ours, [this](const Window& window) {
        return window.pid() != process_.pid() || !window.isShown();
    });
    return ours;
}

std::optional<Window> WatchedPlayer::mainWindow() const {
    auto window = mainWindowEvenHidden();
    return window && window->isShown() ? window : std::nullopt;
}

std::optional<Window> WatchedPlayer::mainWindowEvenHidden() const {
    return findWindow(*display_, [this](const Window& window) {
        return window.pid() == process_.pid() && window.title() == player::TITLE &&
               window.place().width == player::WIDTH;
    });
}

void WatchedPlayer::restore() const {
    const auto window = mainWindowEvenHidden();
    if (window && window->isMinimised()) {
        // openbox shows a minimised window and one of another desktop alike.
        showFirstDesktop(*display_);
        window->activate();
    }
}

std::optional<std::chrono::milliseconds> WatchedPlayer::answer() {
    const auto asked = mainWindowEvenHidden();
    if (!asked) {
        return std::chrono::milliseconds(0);
    }
    const auto answer = question_.ask(*asked, [this] { return process_.running(); });
    return answer || process_.running() ? answer : std::chrono::milliseconds(0);
}

std::string WatchedPlayer::judgeEnd() {
    const auto code = process_.waitForExit();
    if (!code) {
        return "it doesn't end";
    }
    std::string wrong = *code == 0 ? "" : "it ended with " + std::to_string(*code);
    const std::string messages = readFile(folder_.file("messages"));
    if (messages.find("ERROR: ") != std::string::npos ||
        messages.find("runtime error") != std::string::npos) {
        wrong += wrong.empty() ? "" : "; ";
        wrong += messages;
    }
    const std::string settings = judgeSettings(readFile(folder_.file("MP3.ini")));
    if (!settings.empty()) {
        wrong += (wrong.empty() ? "" : "; ") + settings;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        const std::string name = entry.path().filename();
        if (name != "zvonivec" && name != "messages" && name != "MP3.ini") {
            wrong += (wrong.empty() ? "it left " : "; it left ") + name;
        }
    }
    return wrong;
}

} // namespace support
