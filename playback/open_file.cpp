// Choosing a file and playing it.

#include "main_window/frmPlayer.h"
#include "playback/rules.h"

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
        if (!refuses(*path)) {
            break;
        }
    }
    opening_ = false;
}

void frmPlayer::OpenGivenFile(const std::string& path) {
    if (opening_ || !Loaded()) {
        return;
    }
    opening_ = true;
    refuses(path);
    opening_ = false;
}

void frmPlayer::Form_FileDropped(const std::string& path) {
    OpenGivenFile(path);
}

bool frmPlayer::refuses(const std::string& path) {
    WMP->setURL(path);
    CD->InitDir = path;
    DoEvents();
    if (!Loaded() || WMP->URL() != path) {
        return false; // an event in that pass has ended the program or unloaded the file
    }
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
