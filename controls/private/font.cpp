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
    // Hinting makes crisp letters of few pixels. Where there are more, it would only leave them at
    // the places that the few pixels allowed.
    font.setHintingPreference(qGuiApp->devicePixelRatio() > 1 ? QFont::PreferNoHinting
                                                              : QFont::PreferFullHinting);
    font.setPixelSize(11);
    font.setBold(bold);
    return font;
}

} // namespace zvonivec
