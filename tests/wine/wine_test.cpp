#include "tests/wine/wine_test.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace support {

void WindowsTest::SetUp() {
    ASSERT_NE(std::getenv("WINEPREFIX"), nullptr) << "run packaging/windows/test";
    if (!firstSettings_.empty()) {
        std::filesystem::create_directory(folder_.file("program"));
        writeFile(settingsPath(), firstSettings_);
    }
    MenuTest::SetUp();
    // The question makes a window. Between press and release, that loses Wine the click.
    display_.askWindowManagerNoMore();
}

void WindowsTest::TearDown() {
    MenuTest::TearDown();
    // Wine's processes use the display, which is destroyed next.
    (void)runInSession({"wineserver", "-k"}); // fails when no server is running any more
    EXPECT_EQ(runInSession({"wineserver", "-w"}), 0);
}

int WindowsTest::runInSession(const std::vector<std::string>& argv,
                              const std::string& outputFile) const {
    Process::Options options;
    options.environment = environment();
    options.environment.emplace_back("SDL_AUDIODRIVER", "");
    options.outputFile = outputFile;
    options.errorFile = "/dev/null";
    return run(argv, options);
}

std::string WindowsTest::windowTexts() const {
    const std::string file = folder_.file("texts");
    EXPECT_EQ(runInSession({"wine", WINDOW_TEXTS}, file), 0);
    return readFile(file);
}

std::optional<Window> WindowsTest::waitForTitle(const std::string& title) const {
    return waitForWindowWithKeyboard([&](const Window& window) {
        return window.title() == title && !(window == player_->window());
    });
}

std::string WindowsTest::windowsPath(std::string path) {
    std::ranges::replace(path, '/', '\\');
    return "Z:" + path;
}

void WindowsTest::answer(const Window& window, const char* key) const {
    EXPECT_TRUE(waitUntil([&] {
        keyboard_.key(key);
        return waitUntil([&] { return !window.isShown(); }, std::chrono::seconds(1));
    })) << window.title();
}

void WindowsTest::openInDialog(const std::string& path) {
    const auto dialog = waitForDialog();
    ASSERT_TRUE(dialog) << "no dialog";
    const std::string name = windowsPath(path);
    if (std::ranges::all_of(name, [](char character) { return character > 0; })) {
        keyboard_.type(name);
    } else { // Wine knows no keys that were added to the keyboard after its start
        ASSERT_EQ(runInSession({"wine", WINDOW_TEXTS, player::DIALOG_TITLE, name}), 0);
    }
    // Wine reads the keys from a queue of its own.
    EXPECT_TRUE(waitUntil([&] { return windowTexts().find(name) != std::string::npos; }))
        << windowTexts();
    answer(*dialog, "Return");
}

Point WindowsTest::corner() const {
    const Rectangle place = player_->window().place();
    return {place.x, place.y};
}

bool WindowsTest::becomesPlacedAt(Point place) const {
    return waitUntil([&] { return corner() == place; });
}

bool WindowsTest::becomesGone() const {
    const auto code = player_->process().waitForExit(std::chrono::seconds(20));
    EXPECT_EQ(code, 0);
    return code.has_value();
}

bool WindowsTest::lightsUp(player::Button button) const {
    const Rectangle& place = player::BUTTONS.at(button);
    // Moves twice, as a hand would. Wine may swallow the first move into a window.
    return waitUntil([&] {
        moveTo(place.middle());
        moveTo({place.x + 3, place.y + 3});
        return player_->showsButton(button, player::Look::hover);
    });
}

void WindowsTest::closePlayer() {
    MenuTest::click(player::close);
    EXPECT_TRUE(becomesGone());
}

void WindowsTest::expectNothingElseWritten() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder_.file("program"))) {
        const std::string name = entry.path().filename();
        EXPECT_TRUE(name == "MP3.ini" || name == "zvonivec.exe" || name == "zvonivec" ||
                    name == "messages")
            << name;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(display_.home())) {
        ADD_FAILURE() << entry.path();
    }
    EXPECT_EQ(runInSession({"wine", "reg", "query", "HKCU\\Software"}), 0);
    const std::string keys = folder_.file("keys");
    EXPECT_NE(runInSession({"wine", "reg", "query", "HKCU\\Software\\QtProject", "/s"}, keys), 0)
        << readFile(keys);
}

} // namespace support
