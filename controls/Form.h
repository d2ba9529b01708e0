// A window without a frame, drawn entirely by the program.
#pragma once

#include "controls/Control.h"
#include "controls/ControlLayout.h"
#include "controls/Picture.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class QPixmap;

namespace zvonivec {

class Form : public Control {
public:
    enum class Kind {
        main, ///< has a taskbar entry and can be minimised
        popup ///< has neither, lies exactly at its place, and is above all other windows while it
              ///< is shown
    };
    enum class WindowState { normal = 0, minimised = 1, maximised = 2 };

    /// Twips from the screen's upper left corner.
    struct Place {
        float left;
        float top;
    };

    ~Form() override;

    /// Twips from the screen's upper left corner. A window may lie outside every screen, but only
    /// within the range of window systems' coordinates.
    ///
    /// The getters return where the window is now.
    [[nodiscard]] float Left() const override;
    [[nodiscard]] float Top() const override;
    void setLeft(float twips) override;
    void setTop(float twips) override;
    /// The same for the next run: a place that the window manager has refused counts until the
    /// window is moved.
    [[nodiscard]] float LeftToKeep() const;
    [[nodiscard]] float TopToKeep() const;
    /// Whether the window system reports where windows are. Otherwise Left and Top mean nothing.
    [[nodiscard]] static bool placeIsKnown();

    /// Returns the place nearest to a wanted one at which another form lies wholly on the screen
    /// that this form is on.
    [[nodiscard]] Place placeOnScreen(const Form& other, Place wanted) const;

    /// Shows or hides the form. An unloaded form stays hidden.
    void setVisible(bool on) override;
    /// Raises the window above others, if the window manager allows it.
    void bringToFront();
    /// Shows a minimised window again, raises the window and gives it the keyboard, if the window
    /// manager allows it.
    void ComeForward();

    /// The text in the taskbar.
    void setCaption(const std::string& text);
    [[nodiscard]] std::string Caption() const;
    void setIcon(const Picture& icon);
    /// Sets the picture that fills the window.
    void setPicture(const Picture& picture);

    [[nodiscard]] enum WindowState WindowState() const;
    void setWindowState(enum WindowState state);

    /// Returns the window system's handle of the window.
    [[nodiscard]] std::uintptr_t hWnd() const;

    /// True until Unload. The program ends when the last loaded form is unloaded.
    [[nodiscard]] bool Loaded() const { return loaded_; }
    /// Calls Form_QueryUnload, hides the window and calls Form_Unload. The form's controls stay, so
    /// that a handler that is still running can finish. Does nothing for a form that isn't loaded.
    void Unload();

    /// Returns the control that the keyboard works on when this form is active, or null when it
    /// works on none.
    [[nodiscard]] Control* focusedControl() const;

    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

protected:
    Form(std::string name, Kind kind, float width, float height);

    /// Called for a popup that is shown when the keyboard has gone to another program's window or
    /// to a box of this program.
    virtual void Form_Deactivate() {}
    /// Called when the form can be seen, and when it has been hidden, minimised, or, a main window,
    /// covered by other windows.
    virtual void Form_SightChanged(bool /*seen*/) {}
    /// Called when a key is pressed in the form. Returns whether the key has been used; otherwise
    /// the Tab key goes to the next control.
    virtual bool Form_KeyDown(const KeyArgs& /*key*/) { return false; }
    /// Called when the user has dropped a file of this machine on the form.
    virtual void Form_FileDropped(const std::string& /*path*/) {}
    /// Lets the user drop files on the form, one at a time.
    void takeDroppedFiles();
    virtual void Form_QueryUnload() {}
    virtual void Form_Unload() {}
    /// Called when the window manager or the session asks the window to close.
    virtual void Form_CloseRequest() { Unload(); }

    /// Sets the properties of each control from the row of the table with its name.
    static void layOut(std::span<const ControlLayout> table, std::span<Control* const> controls);

private:
    void paint(QPainter& painter) override;
    void deactivate();
    /// Takes note that the window system shows the window, or doesn't any more.
    void sightChanged(bool shown);
    /// Logical pixels.
    struct PixelPlace {
        double x = 0;
        double y = 0;
        friend bool operator==(const PixelPlace&, const PixelPlace&) = default;
    };
    struct Refusal {
        PixelPlace wanted;
        PixelPlace granted;
    };
    [[nodiscard]] PixelPlace place() const;
    [[nodiscard]] PixelPlace placeToKeep() const;
    void moveTo(PixelPlace wanted);
    /// Asks the window manager for the wanted place after a number of earlier requests.
    void checkPlace(int requests);
    void checkPlaceLater(int requests);
    /// Ends the requests when the window is at its place.
    void takeReportedPlace();
    [[nodiscard]] const QPixmap& outlinedPicture();

    /// Set from the moment when the window is shown until it is there or the window manager has
    /// refused. Window managers push a new window that reaches beyond the screen back onto it, or
    /// add a frame to its place, but many carry out a later request.
    std::optional<PixelPlace> wantedPlace_;
    PixelPlace seenPlace_; ///< where the last check has found it
    std::optional<Refusal> refused_;

    Kind kind_;
    Picture picture_;
    std::unique_ptr<QPixmap> outlined_; ///< the picture within the window's outline
    int timesShown_ = 0;
    int timesChecked_ = 0;    ///< value of timesShown_ at the last check of the place
    int timesSettled_ = 0;    ///< the same, since the window system has placed the window
    bool isSettling_ = false; ///< whether a window at its place may still be put elsewhere
    bool isShown_ = false;    ///< and not minimised
    bool coverIsWatched_ = false;
    bool loaded_ = true;
    bool unloading_ = false;
};

} // namespace zvonivec
