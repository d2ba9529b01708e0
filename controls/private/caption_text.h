// The visible form of a caption.
#pragma once

#include <QList>
#include <QRect>
#include <QString>

class QPainter;

namespace zvonivec {

/// A caption in one line, without access-key marks.
struct CaptionText {
    QString text;
    QList<int> underlined; ///< indices of characters that follow an access-key mark

    /// Converts a caption. "&&" becomes an ampersand and "&x" an underlined x. An "&" at the end is
    /// dropped. Control characters and line ends become blanks.
    static CaptionText of(const QString& caption);

    /// Draws it with the painter's font from the top of a place, at its left, right or middle. With
    /// a font that is wider than the one the place is made for, it is drawn narrower; with a
    /// higher one, its baseline moves up.
    void draw(QPainter& painter, const QRect& place, Qt::Alignment alignment) const;
};

} // namespace zvonivec
