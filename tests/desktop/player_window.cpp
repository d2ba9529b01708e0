#include "tests/desktop/player_window.h"

#include "skin/pictures.h"

namespace support::player {

Picture listPicture(int number) {
    return Picture(
        std::string(zvonivec::skin::LIST_PICTURES.at(static_cast<std::size_t>(number - 1)).file));
}

Picture buttonPicture(Button button, Look look) {
    static constexpr std::array first{1, 8, 15, 27};
    return listPicture(button + first.at(static_cast<std::size_t>(look)));
}

Picture markPicture(Button command) {
    return listPicture(command + 22);
}

Picture idlePicture() {
    Picture window("body.gif");
    for (const Button button : {rewind, pause, play, stop, forward, minimise, close}) {
        const Look look = button <= forward ? Look::disabled : Look::normal;
        window.put(buttonPicture(button, look), {BUTTONS.at(button).x, BUTTONS.at(button).y});
    }
    window.put(Picture("logo.png"), {LOGO.x, LOGO.y});
    window.put(Picture("volume.gif"), {VOLUME.x, VOLUME.y});
    window.put(markPicture(stop), {MARK.x, MARK.y});
    return window;
}

} // namespace support::player
