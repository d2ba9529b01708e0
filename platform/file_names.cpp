#include "platform/file_names.h"

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QStringDecoder>
#include <QSysInfo>
#include <QUrl>
#include <algorithm>

namespace zvonivec {

namespace {

bool isUtf8(const std::string& text) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(QByteArrayView(text));
    return !decoder.hasError();
}

std::string fromWindows1250(const std::string& text) {
    QStringDecoder decoder("windows-1250");
    if (!decoder.isValid()) {
        return QString::fromLatin1(text).toStdString(); // a toolkit without code pages
    }
    const QString decoded = decoder(QByteArrayView(text));
    return decoded.toStdString();
}

} // namespace

std::string shownPath(const std::string& path) {
    if (isUtf8(path)) {
        return path;
    }
    std::string shown;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string part = path.substr(begin, end - begin);
        shown += isUtf8(part) ? part : fromWindows1250(part);
        shown += end < path.size() ? "/" : "";
        begin = end + 1;
    }
    return shown;
}

std::string fileUrl(const std::string& path) {
    return isUtf8(path)
               ? QUrl::fromLocalFile(QString::fromStdString(path)).toEncoded().toStdString()
               : "file://" + QByteArray::fromStdString(path).toPercentEncoding("/").toStdString();
}

std::optional<std::string> localPath(QUrl url) {
    const QString host = url.host();
    if (!url.isLocalFile() ||
        (!host.isEmpty() && host != QStringLiteral("localhost") &&
         host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) != 0)) {
        return std::nullopt;
    }
    url.setHost({});
    const std::string path =
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
    return isUtf8(path) ? QDir::toNativeSeparators(url.toLocalFile()).toStdString() : path;
}

} // namespace zvonivec
