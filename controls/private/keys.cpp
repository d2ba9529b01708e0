#include "controls/keys.h"

#include <QString>

namespace zvonivec {

std::string firstLetter(const std::string& text) {
    // In this form an accent is a character of its own, behind its letter.
    const QString parts = QString::fromStdString(text).normalized(QString::NormalizationForm_D);
    for (const QChar character : parts) {
        if (character.isLetterOrNumber()) {
            return QString(character.toLower()).toStdString();
        }
    }
    return {};
}

} // namespace zvonivec
