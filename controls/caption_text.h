// What a caption looks like on the screen.
#pragma once

#include <QList>
#include <QString>

namespace zvonivec {

/// A caption ready to be drawn: one line, access-key marks taken out.
struct CaptionText {
    QString text;
    QList<int> underlined; ///< places in text that an access-key mark stood before

    /// "&&" is an ampersand, "&x" an underlined x, an "&" at the end nothing. Control characters
    /// and line ends are blanks.
    static CaptionText of(const QString& caption);
};

} // namespace zvonivec
