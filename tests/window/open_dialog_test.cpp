// The program's own dialog for choosing a file. Each test looks at it and then closes it.

#include "tests/window/input.h"
#include "tests/window/player_test.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
#include <QPixmapCache>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <filesystem>
#include <malloc.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zvonivec {
namespace {

namespace fs = std::filesystem;

void pressKey(QWidget& widget, Qt::Key key, const QString& text = {}) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QApplication::sendEvent(&widget, &event);
    }
}

void typeKeys(QWidget& widget, const QString& text) {
    for (const QChar character : text) {
        pressKey(widget, Qt::Key_unknown, character);
    }
}

void doubleClick(const QTreeView& list, int row) {
    const QPointF place = list.visualRect(list.model()->index(row, 0)).center();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                            QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held =
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, place, list.viewport()->mapToGlobal(place), Qt::LeftButton, held,
                          Qt::NoModifier);
        QApplication::sendEvent(list.viewport(), &event);
    }
}

class OpenDialogTest : public PlayerTest {
protected:
    void SetUp() override {
        start();
        dialog_.setOwner(player());
        dialog_.Filter = "MP3 soubory (*.mp3)|*.mp3|Všechny soubory (*.*)|*.*|";
        dialog_.DialogTitle = "Otevřít soubor MP3";
        dialog_.Flags = CommonDialog::fileMustExist | CommonDialog::hideReadOnly;
        dialog_.InitDir = folder_.path();
    }

    /// Shows the dialog, runs a function while it is open, and cancels it unless the function has
    /// ended it. Returns what was chosen.
    std::optional<std::string> show(const std::function<void()>& during) {
        bool seen = false;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            shown_ = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (shown_ != nullptr && shown_->isVisible()) {
                poll.stop();
                seen = true;
                during();
                if (shown_->isVisible()) {
                    shown_->reject();
                }
            }
        });
        poll.start(1);
        std::optional<std::string> chosen = dialog_.ShowOpen();
        EXPECT_TRUE(seen);
        return chosen;
    }

    [[nodiscard]] QDialog& shown() const { return *shown_; }
    [[nodiscard]] QTreeView& list() const { return *shown_->findChild<QTreeView*>("files"); }
    [[nodiscard]] QLineEdit& nameLine() const { return *shown_->findChild<QLineEdit*>("name"); }
    [[nodiscard]] QString message() const { return shown_->findChild<QLabel*>("message")->text(); }
    [[nodiscard]] QString folderShown() const {
        return shown_->findChild<QLineEdit*>("folder")->text();
    }
    /// Returns the texts of a column, from the top.
    [[nodiscard]] QStringList texts(int column = 0) const {
        QStringList all;
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            all.append(list().model()->index(row, column).data().toString());
        }
        return all;
    }
    [[nodiscard]] bool lists(const QStringList& names) const {
        return serveUntil([&] { return texts() == names; });
    }
    void chooseAllFiles() const {
        shown_->findChild<QComboBox*>("fileTypeCombo")->setCurrentIndex(1);
    }
    void type(const QString& text) const {
        nameLine().clear();
        typeKeys(nameLine(), text);
        pressKey(nameLine(), Qt::Key_Return);
    }
    void put(const std::string& name, const std::string& bytes = "x") const {
        support::writeFile(folder_.file(name), bytes);
    }
    [[nodiscard]] std::string makeFile(const std::string& name) const {
        put(name);
        return folder_.file(name);
    }

    support::TemporaryFolder folder_;
    SystemDialog dialog_;

private:
    QDialog* shown_ = nullptr;
};

TEST_F(OpenDialogTest, AsksForOneExistingFile) {
    const std::string path = makeFile("a.mp3");
    fs::create_directory(folder_.file("inner"));
    EXPECT_EQ(show([&] {
                  EXPECT_EQ(shown().windowTitle(), "Otevřít soubor MP3");
                  EXPECT_TRUE(shown().isModal());
                  EXPECT_EQ(list().selectionMode(), QAbstractItemView::SingleSelection);
                  const auto* filters = shown().findChild<QComboBox*>("fileTypeCombo");
                  ASSERT_NE(filters, nullptr);
                  EXPECT_EQ(filters->count(), 2);
                  EXPECT_EQ(filters->itemText(0), "MP3 soubory (*.mp3)");
                  EXPECT_EQ(filters->itemText(1), "Všechny soubory (*.*)");
                  EXPECT_EQ(filters->currentIndex(), 0);

                  type("b.mp3");
                  EXPECT_TRUE(serveUntil([&] { return message() == "Soubor neexistuje."; }));
                  EXPECT_TRUE(shown().isVisible());
                  type("inner");
                  EXPECT_TRUE(serveUntil([&] {
                      return folderShown() == QString::fromStdString(folder_.file("inner"));
                  }));
                  EXPECT_TRUE(shown().isVisible());
                  type("../a.mp3");
                  EXPECT_TRUE(serveUntil([&] { return !shown().isVisible(); }));
              }),
              folder_.file("inner/../a.mp3"));
    EXPECT_EQ(show([&] {
                  type(QString::fromStdString(path));
                  EXPECT_TRUE(serveUntil([&] { return !shown().isVisible(); }));
              }),
              path);
}

TEST_F(OpenDialogTest, HasCzechButtons) {
    EXPECT_EQ(show([&] {
                  QStringList texts;
                  for (const QPushButton* button : shown().findChildren<QPushButton*>()) {
                      texts.append(button->text().remove(u'&'));
                  }
                  EXPECT_TRUE(texts.contains("Zrušit")) << texts.join(u' ').toStdString();
                  EXPECT_TRUE(texts.contains("Otevřít")) << texts.join(u' ').toStdString();
              }),
              std::nullopt);
}

TEST_F(OpenDialogTest, ListsFoldersAndThenFilesThatMatchTheFilter) {
    for (const char* name : {"b.mp3", "A.MP3", "č.mp3", "d.mp3", "c.mp3", "10.mp3", "9.mp3",
                             "x.txt", "mp3", ".hidden.mp3", "a.mp3.txt", "line\nbreak.mp3"}) {
        put(name);
    }
    fs::create_directory(folder_.file("z"));
    fs::create_directory(folder_.file(".config"));
    show([&] {
        EXPECT_TRUE(lists({"z", "9.mp3", "10.mp3", "A.MP3", "b.mp3", "c.mp3", "č.mp3", "d.mp3",
                           "line\nbreak.mp3"}))
            << texts().join(u'|').toStdString();
        chooseAllFiles();
        EXPECT_TRUE(lists({"z", "9.mp3", "10.mp3", "A.MP3", "a.mp3.txt", "b.mp3", "c.mp3", "č.mp3",
                           "d.mp3", "line\nbreak.mp3", "mp3", "x.txt"}))
            << texts().join(u'|').toStdString();
    });
}

TEST_F(OpenDialogTest, SortsByEachColumn) {
    put("a.mp3", std::string(30, 'x'));
    put("b.mp3", std::string(10, 'x'));
    put("c.mp3", std::string(20, 'x'));
    const auto now = fs::file_time_type::clock::now();
    fs::last_write_time(folder_.file("a.mp3"), now - std::chrono::hours(2));
    fs::last_write_time(folder_.file("b.mp3"), now - std::chrono::hours(1));
    fs::last_write_time(folder_.file("c.mp3"), now - std::chrono::hours(3));
    show([&] {
        ASSERT_TRUE(lists({"a.mp3", "b.mp3", "c.mp3"}));
        list().sortByColumn(0, Qt::DescendingOrder);
        EXPECT_EQ(texts(), QStringList({"c.mp3", "b.mp3", "a.mp3"}));
        list().sortByColumn(1, Qt::AscendingOrder);
        EXPECT_EQ(texts(), QStringList({"b.mp3", "c.mp3", "a.mp3"}));
        list().sortByColumn(2, Qt::AscendingOrder);
        EXPECT_EQ(texts(), QStringList({"c.mp3", "a.mp3", "b.mp3"}));
    });
}

TEST_F(OpenDialogTest, ADoubleClickOpensAFolderAndChoosesAFile) {
    fs::create_directory(folder_.file("inner"));
    const std::string path = makeFile("inner/a.mp3");
    EXPECT_EQ(show([&] {
                  ASSERT_TRUE(lists({"inner"}));
                  doubleClick(list(), 0);
                  ASSERT_TRUE(lists({"a.mp3"}));
                  list().setFocus();
                  ASSERT_TRUE(serveUntil([&] { return list().hasFocus(); }));
                  input::key(*shown().windowHandle(), Qt::Key_Backspace);
                  ASSERT_TRUE(lists({"inner"}));
                  doubleClick(list(), 0);
                  ASSERT_TRUE(lists({"a.mp3"}));
                  doubleClick(list(), 0);
                  EXPECT_FALSE(shown().isVisible());
              }),
              path);
}

TEST_F(OpenDialogTest, ShowsNamesThatAreNotUtf8WithGuessedLetters) {
    const std::string name = "\x8Elu\x9Dou\xE8k\xFD k\xF9\xF2.mp3"; // Windows-1250
    const std::string inner = folder_.file("p\xEDsn\xEC");
    fs::create_directory(inner);
    support::writeFile(inner + "/" + name, "x");
    EXPECT_EQ(show([&] {
                  ASSERT_TRUE(lists({"písně"})) << texts().join(u'|').toStdString();
                  list().setCurrentIndex(list().model()->index(0, 0));
                  pressKey(list(), Qt::Key_Return);
                  ASSERT_TRUE(lists({"Žluťoučký kůň.mp3"})) << texts().join(u'|').toStdString();
                  EXPECT_TRUE(folderShown().endsWith("/písně"));
                  list().setCurrentIndex(list().model()->index(0, 0));
                  EXPECT_EQ(nameLine().text(), "Žluťoučký kůň.mp3");
                  pressKey(nameLine(), Qt::Key_Return);
                  EXPECT_FALSE(shown().isVisible());
              }),
              inner + "/" + name);
    // The next dialog opens there.
    dialog_.InitDir = inner + "/" + name;
    show([&] { EXPECT_TRUE(lists({"Žluťoučký kůň.mp3"})); });
}

TEST_F(OpenDialogTest, ReadsNoFile) {
    for (int i = 0; i < 20; ++i) {
        put("song" + std::to_string(i), "%PDF-1.4"); // no extension says what it is
    }
    put("a.mp3");
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(inotify_add_watch(watch, folder_.path().c_str(), IN_OPEN | IN_ACCESS | IN_MODIFY), 0);
    const auto filesOpened = [watch] {
        std::vector<std::string> names;
        alignas(inotify_event) std::array<char, 8192> buffer{};
        for (ssize_t size = 0; (size = read(watch, buffer.data(), buffer.size())) > 0;) {
            for (ssize_t place = 0; place < size;) {
                const auto& event = *reinterpret_cast<inotify_event*>(buffer.data() + place);
                if (event.len > 0) {
                    names.emplace_back(event.name);
                }
                place += static_cast<ssize_t>(sizeof(inotify_event) + event.len);
            }
        }
        return names;
    };
    support::readFile(folder_.file("a.mp3")); // the watch works
    ASSERT_NE(filesOpened(), std::vector<std::string>{});
    show([&] {
        chooseAllFiles();
        ASSERT_TRUE(serveUntil([&] { return texts().size() == 21; }));
        list().repaint();
    });
    EXPECT_EQ(filesOpened(), std::vector<std::string>{});
    close(watch);
}

TEST_F(OpenDialogTest, LeavesOutPipesDevicesAndLinksToThem) {
    ASSERT_EQ(mkfifo(folder_.file("pipe.mp3").c_str(), 0600), 0);
    fs::create_symlink(folder_.file("pipe.mp3"), folder_.file("link"));
    fs::create_symlink("/dev/tty", folder_.file("tty"));
    fs::create_symlink("/no/such/file", folder_.file("nothing.mp3"));
    fs::create_symlink(makeFile("a.mp3"), folder_.file("b.mp3"));
    fs::create_directory_symlink(folder_.path(), folder_.file("again"));
    show([&] {
        chooseAllFiles();
        EXPECT_TRUE(lists({"again", "a.mp3", "b.mp3"})) << texts().join(u'|').toStdString();
    });
}

TEST_F(OpenDialogTest, ChangesNothingOnTheDisk) {
    put("a.mp3");
    show([&] {
        ASSERT_TRUE(lists({"a.mp3"}));
        for (const QAbstractButton* button : shown().findChildren<QAbstractButton*>()) {
            EXPECT_FALSE(button->text().contains("Nová") || button->toolTip().contains("Nová"));
        }
        list().setCurrentIndex(list().model()->index(0, 0));
        list().setFocus();
        pressKey(list(), Qt::Key_Delete);
        pressKey(list(), Qt::Key_F2);
        typeKeys(list(), "b.mp3");
        EXPECT_FALSE(list().currentIndex().flags().testFlag(Qt::ItemIsEditable));
        EXPECT_EQ(list().contextMenuPolicy(), Qt::DefaultContextMenu);
        EXPECT_TRUE(list().actions().isEmpty());
        EXPECT_FALSE(list().dragEnabled());
        EXPECT_TRUE(QApplication::activeModalWidget() == &shown());
    });
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 1);
    EXPECT_TRUE(fs::exists(folder_.file("a.mp3")));
}

TEST_F(OpenDialogTest, ColumnsAreAsWideAsTheirTextsAndDatesAreTheLocales) {
    put("a.mp3", std::string(1234567, 'x'));
    put(std::string(120, 'w') + ".mp3");
    const auto time = fs::last_write_time(folder_.file("a.mp3"));
    const auto seconds = std::chrono::floor<std::chrono::seconds>(
        std::chrono::file_clock::to_sys(time).time_since_epoch());
    show([&] {
        ASSERT_TRUE(serveUntil([&] { return texts().size() == 2; }));
        EXPECT_EQ(texts(2)[0],
                  QLocale::system().toString(QDateTime::fromSecsSinceEpoch(seconds.count()),
                                             QLocale::ShortFormat));
        EXPECT_EQ(texts(1)[0], QLocale::system().formattedDataSize(1234567, 1));
        const QFontMetrics metrics(list().font());
        for (int column = 0; column < 3; ++column) {
            for (const QString& text : texts(column)) {
                EXPECT_GT(list().columnWidth(column), metrics.horizontalAdvance(text))
                    << text.toStdString();
            }
            const QString head =
                list().model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
            EXPECT_GT(list().columnWidth(column), metrics.horizontalAdvance(head));
        }
    });
}

TEST_F(OpenDialogTest, KeepsNothingOfAFolderAfterItsEnd) {
    for (int i = 0; i < 30; ++i) {
        put(std::to_string(i) + ".mp3");
    }
    const auto openings = [&](int count) {
        for (int i = 0; i < count; ++i) {
            show([&] { ASSERT_TRUE(serveUntil([&] { return texts().size() == 30; })); });
        }
        serveUntil([] { return true; });
        return static_cast<double>(mallinfo2().uordblks);
    };
    // The toolkit keeps some bytes of every window, and more of the first ones.
    constexpr int count = 20;
    double least = 1e9;
    double before = openings(count);
    for (int round = 0; round < 3; ++round) {
        const double after = openings(count);
        least = std::min(least, (after - before) / count);
        before = after;
    }
    EXPECT_LT(least, 4000) << "bytes";
}

TEST_F(OpenDialogTest, LeavesNoPicturesOfWindowsBehind) {
    const QString key = QStringLiteral("a part of a window");
    QPixmap kept;
    show([&] {
        QPixmapCache::insert(key, QPixmap(1, 1));
        ASSERT_TRUE(QPixmapCache::find(key, &kept));
    });
    EXPECT_FALSE(QPixmapCache::find(key, &kept));
}

/// Where the dialog opens.
class StartFolder : public OpenDialogTest {
protected:
    QString folderFor(const std::string& initDir) {
        QString folder;
        dialog_.InitDir = initDir;
        EXPECT_EQ(show([&] { folder = QDir(folderShown()).canonicalPath(); }), std::nullopt);
        return folder;
    }
    [[nodiscard]] QString own() const {
        return QDir(QString::fromStdString(folder_.path())).canonicalPath();
    }
};

TEST_F(StartFolder, IsTheGivenFolder) {
    EXPECT_EQ(folderFor(folder_.path()), own());
    EXPECT_EQ(folderFor("/"), "/");
}

TEST_F(StartFolder, IsThatOfTheGivenFile) {
    EXPECT_EQ(folderFor(makeFile("a.mp3")), own());
}

TEST_F(StartFolder, IsThatOfAFileThatHasGone) {
    const std::string path = makeFile("a.mp3");
    EXPECT_EQ(show([&] {
                  type("a.mp3");
                  EXPECT_TRUE(serveUntil([&] { return !shown().isVisible(); }));
              }),
              path);
    fs::remove(path);
    EXPECT_EQ(folderFor(path), own());
}

TEST_F(StartFolder, IsTheMusicFolderWithoutAGivenFolder) {
    const QDir home = QDir::home();
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    // The folder is removed below, with all that it holds: it must be the tests' own.
    ASSERT_TRUE(home.canonicalPath().startsWith(QDir::temp().canonicalPath() + '/'));
    ASSERT_TRUE(music.startsWith(home.path() + '/')) << music.toStdString();
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
