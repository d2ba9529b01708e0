// The real dialog and the real message boxes, answered by a user who looks at them first.

#include "tests/window/player_test.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

namespace zvonivec {
namespace {

class Boxes : public PlayerTest {
protected:
    void SetUp() override { start(); }

    /// Runs a function as soon as a modal window is on the screen, and closes it afterwards.
    template<class Window>
    void whenShown(std::function<void(Window&)> look) {
        poll_.disconnect();
        QObject::connect(&poll_, &QTimer::timeout, &poll_, [this, look] {
            auto* shown = qobject_cast<Window*>(QApplication::activeModalWidget());
            if (shown != nullptr && shown->isVisible()) {
                poll_.stop();
                ++seen_;
                look(*shown);
                shown->reject();
            }
        });
        poll_.start(5);
    }
    int seen() const { return seen_; }

private:
    QTimer poll_;
    int seen_ = 0;
};

TEST_F(Boxes, AMessageBoxIsPlainTextWithOneButton) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    whenShown<QMessageBox>([this](QMessageBox& box) {
        EXPECT_EQ(box.text(), "<b>x</b>\r\ny");
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.windowTitle(), "Zvonivec");
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        ASSERT_EQ(box.buttons().size(), 1);
        EXPECT_EQ(box.standardButton(box.buttons()[0]), QMessageBox::Ok);
        EXPECT_EQ(box.parentWidget(), &window());
        EXPECT_TRUE(box.isModal());
    });
    boxes.MsgBox("<b>x</b>\r\ny", vbCritical, "Zvonivec");
    EXPECT_EQ(seen(), 1);
}

TEST_F(Boxes, TheTimerGoesOnBehindABox) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    const float before = player().picDisplay.Left();
    whenShown<QMessageBox>([&](QMessageBox&) {
        EXPECT_TRUE(serveUntil([&] { return player().picDisplay.Left() < before - 60; }));
    });
    boxes.MsgBox("x", vbInformation, "y");
    EXPECT_EQ(seen(), 1);
}

TEST_F(Boxes, ABoxEndsWithTheProgram) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    bool returned = false;
    QTimer::singleShot(0, [&] {
        boxes.MsgBox("x", vbCritical, "y");
        returned = true;
    });
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (QApplication::activeModalWidget() != nullptr) {
            player().CloseApplication();
        }
    });
    poll.start(5);
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_TRUE(returned);
    EXPECT_FALSE(player().Loaded());
}

TEST_F(Boxes, ABoxHidesTheMenu) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    player().ShowPopupMenu();
    whenShown<QMessageBox>([this](QMessageBox&) { EXPECT_FALSE(popup().Visible()); });
    boxes.MsgBox("x", vbCritical, "y");
    EXPECT_EQ(seen(), 1);
}

class Dialog : public Boxes {
protected:
    void SetUp() override {
        Boxes::SetUp();
        dialog_.setOwner(player());
        dialog_.Filter = "MP3 soubory (*.mp3)|*.mp3|Všechny soubory (*.*)|*.*|";
        dialog_.DialogTitle = "Otevřít soubor MP3";
        dialog_.Flags = CommonDialog::fileMustExist | CommonDialog::hideReadOnly;
    }

    /// The folder that the dialog opens in.
    QString folderFor(const std::string& initDir) {
        QString folder;
        dialog_.InitDir = initDir;
        whenShown<QFileDialog>(
            [&](QFileDialog& shown) { folder = shown.directory().canonicalPath(); });
        EXPECT_EQ(dialog_.ShowOpen(), std::nullopt);
        return folder;
    }

    SystemDialog dialog_;
};

TEST_F(Dialog, AsksForOneExistingFile) {
    whenShown<QFileDialog>([](QFileDialog& shown) {
        EXPECT_EQ(shown.windowTitle(), "Otevřít soubor MP3");
        EXPECT_EQ(shown.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(shown.acceptMode(), QFileDialog::AcceptOpen);
        auto* filters = shown.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
        ASSERT_NE(filters, nullptr);
        EXPECT_EQ(filters->count(), 2);
        EXPECT_EQ(filters->itemText(0).trimmed(), "MP3 soubory (*.mp3)");
        EXPECT_EQ(filters->itemText(1).trimmed(), "Všechny soubory (*.*)");
        EXPECT_EQ(filters->currentIndex(), 0);
    });
    EXPECT_EQ(dialog_.ShowOpen(), std::nullopt);
    EXPECT_EQ(seen(), 1);
}

TEST_F(Dialog, SpeaksCzechWhereTheToolkitCan) {
    whenShown<QFileDialog>([](QFileDialog& shown) {
        auto* cancel = shown.findChild<QPushButton*>();
        ASSERT_NE(cancel, nullptr);
        QStringList texts;
        for (const QPushButton* button : shown.findChildren<QPushButton*>()) {
            texts.append(button->text().remove(u'&'));
        }
        EXPECT_TRUE(texts.contains(QStringLiteral("Zrušit"))) << texts.join(u' ').toStdString();
    });
    EXPECT_EQ(dialog_.ShowOpen(), std::nullopt);
}

TEST_F(Dialog, OpensInAFolderThatIsNamed) {
    const QTemporaryDir folder;
    EXPECT_EQ(folderFor(folder.path().toStdString()), QDir(folder.path()).canonicalPath());
}

TEST_F(Dialog, OpensWhereTheNamedFileIs) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.mp3")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(folderFor(file.fileName().toStdString()), QDir(folder.path()).canonicalPath());
}

TEST_F(Dialog, OpensAmongTheMusicWhereNoFolderIsNamed) {
    const QDir home = QDir::home();
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    for (const char* nothing : {"/h", "C:", "", "/no/such/folder"}) {
        QDir(music).removeRecursively();
        if (QDir(music) != home) {
            EXPECT_EQ(folderFor(nothing), home.canonicalPath()) << nothing;
            ASSERT_TRUE(QDir().mkpath(music));
        }
        EXPECT_EQ(folderFor(nothing), QDir(music).canonicalPath()) << nothing;
    }
}

} // namespace
} // namespace zvonivec
