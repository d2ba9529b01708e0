#include "bench/player_at_work.h"

namespace bench {

PlayerAtWork::PlayerAtWork() {
    if (!display_.ok() || !sound_.running()) {
        return;
    }
    display_.useInThisProcess();
    sound_.useInThisProcess();
    application_ = std::make_unique<zvonivec::Application>("xcb");
    auto dialog = std::make_unique<FixedDialog>();
    dialog_ = dialog.get();
    player_ = std::make_unique<zvonivec::frmPlayer>(zvonivec::frmPlayer::Parts{
        .engine = zvonivec::createPlayerEngine(zvonivec::Application::post),
        .dialog = std::move(dialog),
        .boxes = std::make_unique<NoBoxes>(),
        .programFolder = folder_.path()});
    player_->Form_Load();
}

PlayerAtWork::~PlayerAtWork() {
    if (player_) {
        player_->CloseApplication();
    }
}

void PlayerAtWork::open(const std::string& file) {
    dialog_->file = file;
    player_->OpenMp3File();
}

} // namespace bench
