// A window without a frame that the program draws all of.
#pragma once

#include "controls/Control.h"
#include "controls/ControlLayout.h"
#include "controls/Picture.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zvonivec {

class Form : public Control {
public:
    enum class Kind {
        main, ///< has a taskbar entry and can be minimised
        popup ///< has neither, and lies exactly where it is put, above all others while it is shown
    };
    enum class WindowState { normal = 0, minimised = 1, maximised = 2 };

    ~Form() override;

    /// Twips from the screen's upper left corner: where the window is now, and where it goes to.
    /// It may lie off every screen, but no farther than window systems can count.
    [[nodiscard]] float Left() const override;
    [[nodiscard]] float Top() const override;
    void setLeft(float twips) override;
    void setTop(float twips) override;

    /// An unloaded form stays hidden.
    void setVisible(bool on) override;
    /// Puts the window in front of the others, as far as the window manager lets it.
    void bringToFront();

    /// Text in the taskbar.
    void setCaption(const std::string& text);
    [[nodiscard]] std::string Caption() const;
    void setIcon(const Picture& icon);
    /// The picture that fills the window.
    void setPicture(const Picture& picture);

    [[nodiscard]] enum WindowState WindowState() const;
    void setWindowState(enum WindowState state);

    /// The window system's name of the window.
    [[nodiscard]] std::uintptr_t hWnd() const;

    /// From the first use until Unload. The program ends when the last loaded form is unloaded.
    [[nodiscard]] bool Loaded() const { return loaded_; }
    /// Runs Form_QueryUnload, hides the window, then runs Form_Unload. The form's controls stay, so
    /// that a handler which is under way can finish. A form that isn't loaded: nothing.
    void Unload();

    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

protected:
    Form(std::string name, Kind kind, float width, float height);

    /// The user has gone elsewhere: another program's window has the keyboard, or a box of this
    /// one. For a popup that is shown.
    virtual void Form_Deactivate() {}
    /// The form has come into sight, or has been hidden or minimised.
    virtual void Form_SightChanged(bool /*seen*/) {}
    /// A key was pressed in the form. Of all keys, Escape is told.
    virtual void Form_KeyDown(std::int16_t /*KeyCode*/) {}
    virtual void Form_QueryUnload() {}
    virtual void Form_Unload() {}
    /// The window manager or the session asks the window to close.
    virtual void Form_CloseRequest() { Unload(); }

    /// Gives each named control its row of the table.
    static void layOut(std::span<const ControlLayout> table, std::span<Control* const> controls);

private:
    void paint(QPainter& painter) override;
    void deactivate();
    void askAgainForPlace();

    struct Place {
        float left;
        float top;
    };
    /// Until the window is seen. Window managers push a new window that reaches beyond the screen
    /// back onto it, but let it go there when it asks once more.
    std::optional<Place> wantedPlace_;

    Picture picture_;
    int timesShown_ = 0;
    bool loaded_ = true;
    bool unloading_ = false;
};

} // namespace zvonivec
