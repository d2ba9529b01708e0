#include "controls/Application.h"

#include "controls/private/accessibility.h"
#include "controls/units.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QScreen>
#include <QThread>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace zvonivec {

namespace {

int loadedForms = 0; // user-interface thread

/// Ends the process with the toolkit's message. By default the toolkit aborts when there is no
/// display, which looks like a crash.
void endInsteadOfAborting(QtMsgType type, const QMessageLogContext& /*context*/,
                          const QString& message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg) {
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

/// Owns the arguments too, because QApplication keeps references to them.
struct Application::Toolkit {
    std::vector<std::string> arguments;
    std::vector<char*> pointers;
    int count = 0;
    std::unique_ptr<QApplication> application;
    QTranslator czech;
};

Application::Application(const std::string& backEnds) : toolkit_(std::make_unique<Toolkit>()) {
    // The program takes no arguments. These go only to the toolkit.
    toolkit_->arguments = {"zvonivec", "-platform", backEnds};
    for (std::string& argument : toolkit_->arguments) {
        toolkit_->pointers.push_back(argument.data());
    }
    toolkit_->count = static_cast<int>(toolkit_->pointers.size());
    toolkit_->pointers.push_back(nullptr);

    QApplication::setApplicationName(QStringLiteral("zvonivec"));
    QApplication::setDesktopFileName(QStringLiteral("zvonivec"));
    const QtMessageHandler usual = qInstallMessageHandler(endInsteadOfAborting);
    toolkit_->application =
        std::make_unique<QApplication>(toolkit_->count, toolkit_->pointers.data());
    qInstallMessageHandler(usual);
    // The program goes on while its window is hidden or minimised.
    QApplication::setQuitOnLastWindowClosed(false);

    // The buttons of dialogs are in Czech too. The translation is in the program itself or in the
    // system's folder.
    const QLocale czech(QLocale::Czech, QLocale::CzechRepublic);
    const auto load = [&](const QString& folder) {
        return toolkit_->czech.load(czech, QStringLiteral("qtbase"), QStringLiteral("_"), folder);
    };
    if (load(QStringLiteral(":/translations")) ||
        load(QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(&toolkit_->czech);
    }
    exposeControls();
}

Application::~Application() = default;

int Application::run() {
    const int code = loadedForms > 0 ? QApplication::exec() : 0;
    if (loadedForms > 0) {
        // The display has gone. Then some versions of the toolkit end its loop, others the process:
        // what is done at the process's end is done in either case.
        std::exit(code);
    }
    return code;
}

void Application::formLoaded() {
    ++loadedForms;
}

void Application::formUnloaded() {
    if (--loadedForms > 0) {
        return;
    }
    // A dialog of the system has an event loop of its own, which the end of the toolkit's loop
    // doesn't end.
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (auto* dialog = qobject_cast<QDialog*>(window)) {
            dialog->reject();
        }
    }
    // Unlike exit, quit would ask the windows first. exit also ends the loops of open boxes. Before
    // the main loop runs, run() sees by itself that there is nothing to do.
    if (QThread::currentThread()->loopLevel() > 0) {
        QCoreApplication::exit(0);
    }
}

void Application::post(std::function<void()> function) {
    QMetaObject::invokeMethod(qApp, std::move(function), Qt::QueuedConnection);
}

std::string Application::programFolder() {
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath()).toStdString();
}

void DoEvents() {
    QCoreApplication::processEvents();
}

namespace {

QRect primaryScreen() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->geometry() : QRect();
}

} // namespace

float Screen::Left() {
    return toTwips(primaryScreen().left());
}

float Screen::Top() {
    return toTwips(primaryScreen().top());
}

float Screen::Width() {
    return toTwips(primaryScreen().width());
}

float Screen::Height() {
    return toTwips(primaryScreen().height());
}

char Locale::decimalSeparator() {
    return QLocale::system().decimalPoint() == QStringLiteral(",") ? ',' : '.';
}

} // namespace zvonivec
