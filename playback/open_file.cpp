// Choosing a file and playing it.

#include "main_window/frmPlayer.h"
#include "playback/rules.h"

#include <utility>

namespace zvonivec {

void frmPlayer::OpenMp3File() {
    // Another click on the logo may be handled in a message pass below.
    if (opening_ || !Loaded()) {
        return;
    }
    opening_ = true;

    CD->Filter = "MP3 soubory (*.mp3)|*.mp3|Všechny soubory (*.*)|*.*|";
    CD->DialogTitle = "Otevřít soubor MP3";
    CD->Flags = CommonDialog::fileMustExist | CommonDialog::hideReadOnly;
    while (Loaded()) {
        const std::optional<std::string> path = CD->ShowOpen();
        if (!path || !Loaded()) {
            break;
        }
        if (!refuses(*path, Awaited::chosen)) {
            break;
        }
    }
    opening_ = false;
    takeAwaitedFile();
}

void frmPlayer::OpenGivenFile(const std::string& path) {
    if (opening_ || !Loaded()) {
        return;
    }
    opening_ = true;
    refuses(path, Awaited::given);
    opening_ = false;
    takeAwaitedFile();
}

void frmPlayer::Form_FileDropped(const std::string& path) {
    OpenGivenFile(path);
}

bool frmPlayer::refuses(const std::string& path, Awaited ifSlow) {
    awaited_ = Awaited::nothing;
    WMP->setURL(path);
    CD->InitDir = path;
    DoEvents();
    if (!Loaded() || WMP->URL() != path) {
        return false; // an event in that pass has ended the program or unloaded the file
    }
    if (WMP->currentMedia().isReadOnlyItem("Filetype")) {
        return refusesLoadedFile();
    }
    awaited_ = ifSlow;
    if (lblTime[0].Visible()) {
        ShowPlayback(false);
    }
    return false;
}

void frmPlayer::takeAwaitedFile() {
    if (awaited_ == Awaited::nothing || opening_ || !Loaded() ||
        !WMP->currentMedia().isReadOnlyItem("Filetype")) {
        return;
    }
    opening_ = true;
    const bool chosen = std::exchange(awaited_, Awaited::nothing) == Awaited::chosen;
    const bool refused = refusesLoadedFile();
    opening_ = false;
    if (refused && chosen) {
        OpenMp3File();
    }
}

bool frmPlayer::refusesLoadedFile() {
    if (isMp3(WMP->currentMedia().getItemInfo("Filetype"))) {
        ShowPlayback(true);
        WMP->controls().play();
        return false;
    }
    if (lblTime[0].Visible()) {
        ShowPlayback(false);
    }
    WMP->setURL("");
    boxes_->MsgBox("Tento soubor není ve formátu MP3!", vbCritical, APPLICATION_TITLE);
    return true;
}

} // namespace zvonivec
