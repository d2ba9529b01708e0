// The properties box and the About box.

#include "contact.h"
#include "main_window/frmPlayer.h"

namespace zvonivec {

namespace {

/// The tabs align the two addresses.
constexpr const char* ABOUT_TEXT =
    "Program je napsán v jazyce C++ s knihovnami Qt, libmpg123, zlib a SDL, sestavuje a "
    "instaluje se nástrojem CMake."
    "\r\n\r\n"
    "Grafika tlačítek a pozadí je vlastní kresba tohoto projektu, zpracovaná podle zveřejněných "
    "grafických návrhů přenosných přehrávačů MP3."
    "\r\n\r\n"
    "E-mail:\t\t" ZVONIVEC_EMAIL "\r\n"
    "Home page:\t" ZVONIVEC_HOME_PAGE;

} // namespace

void frmPlayer::ShowPropertiesBox() {
    boxes_->MsgBox(BuildPropertiesText(), vbInformation,
                   std::string(APPLICATION_TITLE) + " - vlastnosti souboru MP3");
}

void frmPlayer::ShowAboutBox() {
    boxes_->MsgBox(ABOUT_TEXT, vbInformation, std::string("O programu ") + APPLICATION_TITLE);
}

} // namespace zvonivec
