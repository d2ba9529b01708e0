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
        WMP->setURL(*path);
        CD->InitDir = *path;
        DoEvents();
        if (!Loaded() || WMP->URL() != *path) {
            break; // an event in that pass has ended the program or unloaded the file
        }
        if (isMp3(WMP->currentMedia().getItemInfo("Filetype"))) {
            ShowPlayback(true);
            WMP->controls().play();
            break;
        }
        if (lblTime[0].Visible()) {
            ShowPlayback(false);
        }
        WMP->setURL("");
        boxes_->MsgBox("Tento soubor není ve formátu MP3!", vbCritical, APPLICATION_TITLE);
    }
    opening_ = false;
}

} // namespace zvonivec
