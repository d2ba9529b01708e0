#include "controls/Application.h"
#include "main_window/frmPlayer.h"
#include "main_window/media_control.h"
#include "platform/confinement.h"
#include "platform/display.h"
#include "platform/display_loss.h"
#include "platform/end_requests.h"
#include "platform/few_descriptors.h"
#include "platform/ignored_signals.h"
#include "platform/thread_supply.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

int main() {
    using namespace zvonivec;

    ignoreSignalsOfFailedWrites();
    confine();
    spareDescriptors(); // sets a variable, so before anything starts threads

    if (!canHaveThreads(TOOLKIT_THREADS)) {
        std::fputs("Zvonivec MP3 Player: systém nedává programu vlákna, okno nelze otevřít.\n",
                   stderr);
        return EXIT_FAILURE;
    }

    auto engine = createPlayerEngine(Application::post);
    Application application(displayBackEnds());

    auto dialog = std::make_unique<SystemDialog>();
    auto boxes = std::make_unique<ModalMessageBoxes>();
    SystemDialog& dialogOfPlayer = *dialog;
    ModalMessageBoxes& boxesOfPlayer = *boxes;

    frmPlayer player({.engine = std::move(engine),
                      .dialog = std::move(dialog),
                      .boxes = std::move(boxes),
                      .programFolder = Application::programFolder()});
    dialogOfPlayer.setOwner(player);
    boxesOfPlayer.setOwner(player);

    const EndRequests endRequests([&player] { player.CloseApplication(); });
    const DisplayLoss displayLoss([&player] { player.SaveSettings(); });
    player.Form_Load();
    const MediaControl mediaControl(player);
    return application.run();
}
