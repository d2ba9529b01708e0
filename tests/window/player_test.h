// The real main window, with a scripted engine, dialog and message boxes behind it.
#pragma once

#include "main_window/frmPlayer.h"
#include "tests/support/fake_engine.h"
#include "tests/support/process.h"

#include <QImage>
#include <QRegion>
#include <QWidget>
#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zvonivec {

/// Serves events until a condition holds; False when it hasn't after some seconds.
bool serveUntil(const std::function<bool()>& condition);

/// The Qt widget of a control.
QWidget* widgetOf(const QWidget& window, const Control& control);

/// What of a window the system lets be seen.
QRegion outlineOf(const QWidget& window);

/// What a part of the window shows, in pixels.
QImage pictureOf(QWidget& widget);

class FakeDialog : public CommonDialog {
public:
    std::deque<std::optional<std::string>> answers; ///< an empty queue cancels
    int shown = 0;
    std::function<void()> During;

    std::optional<std::string> ShowOpen() override;
};

class FakeBoxes : public MessageBoxes {
public:
    struct Box {
        std::string text;
        int style;
        std::string title;
    };
    std::vector<Box> boxes;
    std::function<void()> During;

    void MsgBox(const std::string& text, int style, const std::string& title) override;
};

class PlayerTest : public testing::Test {
protected:
    using FakeEngine = support::FakeEngine;

    PlayerTest();
    ~PlayerTest() override;

    /// Throws the window away and makes a new one, as if the program were started again.
    void renew();
    /// The folder that the program takes for its own.
    [[nodiscard]] const std::string& programFolder() const { return folder_.path(); }
    /// Loads the window, as the program's start does.
    void start();
    /// Opens a file that the engine knows, as a click on the logo does.
    void open(const std::string& path);

    // The pointer, at places in pixels from the control's upper left corner.
    void press(const Control& control, Qt::MouseButton button = Qt::LeftButton,
               QPoint place = {2, 2});
    void release(const Control& control, Qt::MouseButton button = Qt::LeftButton,
                 QPoint place = {2, 2});
    void click(const Control& control, Qt::MouseButton button = Qt::LeftButton,
               QPoint place = {2, 2});
    void moveOver(const Control& control, QPoint place = {2, 2});
    /// A place of the window that no control covers.
    void moveOverBody();

    [[nodiscard]] QWidget& window() const;
    [[nodiscard]] QWidget& popupWindow();
    /// The widget of a control of either window.
    QWidget& widgetOfControl(const Control& control);
    [[nodiscard]] bool shows(const Image& image, std::size_t pictureNumber) const;
    /// Checks that everything tells of the same look.
    void expectLook(bool playing) const;

    frmPlayer& player() { return *player_; }
    frmPopup& popup() { return player_->Popup(); }
    FakeEngine& engine() { return *engine_; }
    FakeDialog& dialog() { return *dialog_; }
    FakeBoxes& boxes() { return *boxes_; }

private:
    support::TemporaryFolder folder_;
    FakeEngine* engine_ = nullptr;
    FakeDialog* dialog_ = nullptr;
    FakeBoxes* boxes_ = nullptr;
    std::unique_ptr<frmPlayer> player_;
};

} // namespace zvonivec
