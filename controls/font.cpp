#include "controls/font.h"

#include <QStringList>

namespace zvonivec {

QFont formFont(bool bold) {
    QFont font;
    font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans"),
                      QStringLiteral("sans-serif")});
    font.setStyleHint(QFont::SansSerif, static_cast<QFont::StyleStrategy>(
                                            QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    font.setHintingPreference(QFont::PreferFullHinting);
    font.setPixelSize(11);
    font.setBold(bold);
    return font;
}

} // namespace zvonivec
