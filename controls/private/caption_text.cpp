#include "controls/private/caption_text.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

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

void CaptionText::draw(QPainter& painter, const QRect& place, Qt::Alignment alignment) const {
    const QFontMetrics metrics = painter.fontMetrics();
    const int width = metrics.horizontalAdvance(text);
    const int above = std::max(0, metrics.height() - place.height());
    QRect line = place.adjusted(0, -above, 0, 0);
    painter.save();
    if (width > place.width()) {
        painter.translate(place.left(), 0);
        painter.scale(static_cast<double>(place.width()) / width, 1);
        line.setLeft(0);
        line.setWidth(width);
    }
    const int flags = static_cast<int>(alignment | Qt::AlignTop) | Qt::TextSingleLine;
    painter.drawText(line, flags, text);
    const int left = painter.boundingRect(line, flags, text).left();
    for (const int at : underlined) {
        const int from = left + metrics.horizontalAdvance(text, at);
        const int to = left + metrics.horizontalAdvance(text, at + 1);
        const int height = line.top() + metrics.ascent() + 1;
        painter.drawLine(from, height, to - 1, height);
    }
    painter.restore();
}

} // namespace zvonivec
