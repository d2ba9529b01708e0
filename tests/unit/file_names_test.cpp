#include "platform/file_names.h"

#include <QSysInfo>
#include <QUrl>
#include <gtest/gtest.h>

namespace zvonivec {
namespace {

TEST(ShownPath, GuessesTheLettersOfPartsThatAreNotUtf8) {
    EXPECT_EQ(shownPath("/hudba/písně/ó.mp3"), "/hudba/písně/ó.mp3");
    EXPECT_EQ(shownPath("/p\xEDsn\xEC/\x8Elu\x9Dou\xE8k\xFD k\xF9\xF2.mp3"),
              "/písně/Žluťoučký kůň.mp3");
    EXPECT_EQ(shownPath("/písně/\xE8/"), "/písně/č/");
    EXPECT_EQ(shownPath("\x9A"), "š");
    EXPECT_EQ(shownPath(""), "");
}

TEST(FileUrl, HoldsTheBytesOfTheName) {
    EXPECT_EQ(fileUrl("/hudba/píseň 100%.mp3"), "file:///hudba/p%C3%ADse%C5%88%20100%25.mp3");
    EXPECT_EQ(fileUrl("/hudba/p\xEDse\xF2 100%.mp3"), "file:///hudba/p%EDse%F2%20100%25.mp3");
}

TEST(LocalPath, IsWhatAUrlWasMadeOf) {
    for (const char* path : {"/hudba/píseň #1?.mp3", "/hudba/p\xEDse\xF2 #1?.mp3", "/a%20b"}) {
        EXPECT_EQ(localPath(QUrl(QString::fromStdString(fileUrl(path)))), path);
    }
}

TEST(LocalPath, IsOfThisMachineAlone) {
    const QString name = QSysInfo::machineHostName().toUpper();
    for (const QString& host : {QString(), QStringLiteral("localhost"), name}) {
        EXPECT_EQ(localPath(QUrl(QStringLiteral("file://%1/a.mp3").arg(host))), "/a.mp3");
    }
    for (const char* url : {"file://elsewhere.example.org/a.mp3", "http://localhost/a.mp3", ""}) {
        EXPECT_EQ(localPath(QUrl(QString::fromLatin1(url))), std::nullopt) << url;
    }
}

} // namespace
} // namespace zvonivec
