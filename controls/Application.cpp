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

/// Without a display Qt aborts, which looks like a crash. This ends the process instead, with the
/// same message.
void endInsteadOfAborting(QtMsgType type, const QMessageLogContext& /*context*/,
                          const QString& message) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg) {
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

/// QApplication keeps references to its arguments, so they live beside it.
struct Application::Toolkit {
    std::vector<std::string> arguments;
    std::vector<char*> pointers;
    int count = 0;
    std::unique_ptr<QApplication> application;
    QTranslator czech;
};

Application::Application(const std::string& backEnds) : toolkit_(std::make_unique<Toolkit>()) {
    // The program takes no arguments; these are for the toolkit alone.
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
    // A hidden or minimised window is no reason to end.
    QApplication::setQuitOnLastWindowClosed(false);

    // The dialog's own buttons speak Czech too, with texts from the program itself or the system's.
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
    return loadedForms > 0 ? QApplication::exec() : 0;
}

void Application::formLoaded() {
    ++loadedForms;
}

void Application::formUnloaded() {
    if (--loadedForms > 0) {
        return;
    }
    // A dialog of the system's own has a loop of its own, which the toolkit's end doesn't end.
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (auto* dialog = qobject_cast<QDialog*>(window)) {
            dialog->reject();
        }
    }
    // exit, not quit, which would ask the windows first. It ends the loops of open boxes too.
    // Before the loop runs there is nothing to end: run() looks for itself.
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

float Screen::Width() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? toTwips(screen->geometry().width()) : 0;
}

float Screen::Height() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? toTwips(screen->geometry().height()) : 0;
}

char Locale::decimalSeparator() {
    return QLocale::system().decimalPoint() == QStringLiteral(",") ? ',' : '.';
}

} // namespace zvonivec
