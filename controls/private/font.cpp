#include "controls/private/font.h"

#include <QGuiApplication>
#include <QStringList>

namespace zvonivec {

QFont formFont(bool bold) {
    QFont font;
    font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans"),
                      QStringLiteral("sans-serif")});
    font.setStyleHint(QFont::SansSerif, static_cast<QFont::StyleStrategy>(
                                            QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    // Hinting makes letters of few pixels crisp. On screens with more device pixels it would only
    // round letters to the places of the few pixels.
    font.setHintingPreference(qGuiApp->devicePixelRatio() > 1 ? QFont::PreferNoHinting
                                                              : QFont::PreferFullHinting);
    font.setPixelSize(11);
    font.setBold(bold);
    return font;
}

} // namespace zvonivec
