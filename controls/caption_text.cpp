#include "controls/caption_text.h"

namespace zvonivec {

namespace {

bool breaksTheLine(QChar character) {
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

} // namespace

CaptionText CaptionText::of(const QString& caption) {
    CaptionText result;
    bool marked = false;
    for (const QChar character : caption) {
        if (character == u'&' && !marked) {
            marked = true;
            continue;
        }
        if (marked && character != u'&') {
            result.underlined.append(static_cast<int>(result.text.size()));
        }
        marked = false;
        result.text.append(breaksTheLine(character) ? QChar(u' ') : character);
    }
    return result;
}

} // namespace zvonivec
