// The real main window with a scripted engine, dialog and message boxes.
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

/// Processes events until a condition holds. Returns false when it doesn't hold within some
/// seconds.
bool serveUntil(const std::function<bool()>& condition);

/// Returns the Qt widget of a control, or null when the control isn't in the window.
QWidget* widgetOf(const QWidget& window, const Control& control);

/// Returns the visible area of a window.
QRegion outlineOf(const QWidget& window);

/// Returns the picture of a widget, in pixels.
QImage pictureOf(QWidget& widget);

class FakeDialog : public CommonDialog {
public:
    std::deque<std::optional<std::string>> answers; ///< an empty queue cancels the dialog
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

    /// Replaces the window by a new one, as if the program were started again.
    void renew();
    /// Returns the program's folder.
    [[nodiscard]] const std::string& programFolder() const { return folder_.path(); }
    /// Loads the window, as the program's start does.
    void start();
    /// Opens a file that the engine knows, as a click on the logo does.
    void open(const std::string& path);

    // Pointer events. Places are in pixels from the control's upper left corner.
    void press(const Control& control, Qt::MouseButton button = Qt::LeftButton,
               QPoint place = {2, 2});
    void release(const Control& control, Qt::MouseButton button = Qt::LeftButton,
                 QPoint place = {2, 2});
    void click(const Control& control, Qt::MouseButton button = Qt::LeftButton,
               QPoint place = {2, 2});
    void moveOver(const Control& control, QPoint place = {2, 2});
    /// Moves the pointer to a place that no control covers.
    void moveOverBody();

    [[nodiscard]] QWidget& window() const;
    /// Whether the window stands in the middle of the screen, as far as whole pixels allow.
    [[nodiscard]] bool isCentred() const;
    [[nodiscard]] QWidget& popupWindow();
    /// Returns the widget of a control in either window.
    QWidget& widgetOfControl(const Control& control);
    [[nodiscard]] bool shows(const Image& image, std::size_t pictureNumber) const;
    /// Checks that all controls have the playing look, or the idle look without a loaded file.
    void expectLook(bool playing) const;
    /// Checks the idle look while a file is loaded whose kind isn't known yet.
    void expectIdleLookWithFile(const std::string& path) const;

    frmPlayer& player() { return *player_; }
    frmPopup& popup() { return player_->Popup(); }
    FakeEngine& engine() { return *engine_; }
    FakeDialog& dialog() { return *dialog_; }
    FakeBoxes& boxes() { return *boxes_; }

private:
    void expectControls(bool playing) const;

    support::TemporaryFolder folder_;
    FakeEngine* engine_ = nullptr;
    FakeDialog* dialog_ = nullptr;
    FakeBoxes* boxes_ = nullptr;
    std::unique_ptr<frmPlayer> player_;
};

} // namespace zvonivec
