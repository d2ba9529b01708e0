// What a caption looks like on the screen.
#pragma once

#include <QList>
#include <QRect>
#include <QString>

class QPainter;

namespace zvonivec {

/// A caption ready to be drawn: one line, access-key marks taken out.
struct CaptionText {
    QString text;
    QList<int> underlined; ///< places in text that an access-key mark stood before

    /// "&&" is an ampersand, "&x" an underlined x, an "&" at the end nothing. Control characters
    /// and line ends are blanks.
    static CaptionText of(const QString& caption);

    /// Draws it with the painter's font from the top of a place, at its left, right or middle. With
    /// a font that is wider than the one the place is made for, it is drawn narrower; with a
    /// higher one, its baseline moves up.
    void draw(QPainter& painter, const QRect& place, Qt::Alignment alignment) const;
};

} // namespace zvonivec
