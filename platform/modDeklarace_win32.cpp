// The Windows implementation of the operations in modDeklarace.h. The program's texts are UTF-8,
// which functions that end in A don't understand. So every text that may go beyond ASCII is passed
// to a function that ends in W.

#include "platform/modDeklarace.h"

#include "platform/system_move_win32.h"
#include "platform/window_region.h"

#include <QEvent>
#include <QString>
#include <QWidget>
#include <algorithm>
#include <vector>
#include <windows.h>

namespace zvonivec::modDeklarace {

namespace {

HWND handleOf(std::uintptr_t window) {
    return reinterpret_cast<HWND>(window);
}

std::wstring wide(const std::string& text) {
    return QString::fromStdString(text).toStdWString();
}

/// Closes an owner's message box when the owner is hidden, because the program is ending and the
/// system would leave the box open.
class BoxCloser : public QObject {
public:
    explicit BoxCloser(QWidget* owner) : owner_(owner) {
        if (owner_ != nullptr) {
            owner_->installEventFilter(this);
        }
    }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Hide && !event->spontaneous()) {
            EnumThreadWindows(GetCurrentThreadId(), close, static_cast<LPARAM>(owner_->winId()));
        }
        return false;
    }

private:
    static BOOL CALLBACK close(HWND window, LPARAM owner) {
        if (GetWindow(window, GW_OWNER) == reinterpret_cast<HWND>(owner)) {
            PostMessageW(window, WM_CLOSE, 0, 0);
        }
        return TRUE;
    }

    QWidget* owner_;
};

} // namespace

bool windowsMayBeTranslucent() {
    return false; // the system's regions are exact, and cheaper
}

bool isTranslucent(const QWidget& /*window*/) {
    return false;
}

void watchTranslucency(QObject* /*receiver*/, std::function<void()> /*changed*/) {}

void shapeWindow(QWidget& window, const RegionData* region, bool redraw) {
    HRGN shape = nullptr;
    if (region != nullptr) {
        std::vector<POINT> vertices;
        for (const QPoint vertex : region->at(window.devicePixelRatioF())) {
            vertices.push_back({vertex.x(), vertex.y()});
        }
        shape = ::CreatePolygonRgn(vertices.data(), static_cast<int>(vertices.size()),
                                   region->rule == Qt::WindingFill ? WINDING : ALTERNATE);
    }
    // The system owns a region that a window has accepted.
    if (::SetWindowRgn(handleOf(window.winId()), shape, redraw ? TRUE : FALSE) == 0 &&
        shape != nullptr) {
        DeleteObject(shape);
    }
}

void SetWindowPos(std::uintptr_t window, int insertAfter, int x, int y, int width, int height,
                  unsigned flags) {
    ::SetWindowPos(handleOf(window),
                   reinterpret_cast<HWND>(static_cast<std::intptr_t>(insertAfter)), x, y, width,
                   height, flags);
}

void ReleaseCapture() {
    ::ReleaseCapture();
}

void SendMessageA(std::uintptr_t window, unsigned message, std::uintptr_t command) {
    QWidget* widget = QWidget::find(window);
    if (widget != nullptr && message == SYSTEM_COMMAND && command == MOVE_BY_POINTER) {
        moveBySystem(*widget);
    }
}

void MessageBoxA(std::uintptr_t owner, const std::string& text, const std::string& title,
                 int style) {
    const BoxCloser closer(QWidget::find(owner));
    ::MessageBoxW(handleOf(owner), wide(text).c_str(), wide(title).c_str(),
                  static_cast<UINT>(style));
}

void CreateMutexA(const std::string& name) {
    ::CreateMutexA(nullptr, FALSE, name.c_str()); // kept until the process ends
}

std::string GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                     const std::string& defaultText, std::size_t size,
                                     const std::string& path) {
    std::wstring buffer(std::max<std::size_t>(size, 1), L'\0');
    const DWORD count = ::GetPrivateProfileStringW(
        wide(section).c_str(), wide(key).c_str(), wide(defaultText).c_str(), buffer.data(),
        static_cast<DWORD>(buffer.size()), wide(path).c_str());
    buffer.resize(count);
    std::string text = QString::fromStdWString(buffer).toStdString();
    text.resize(std::min(text.size(), size - std::min<std::size_t>(size, 1)));
    return text;
}

void WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                const std::string& value, const std::string& path) {
    ::WritePrivateProfileStringW(wide(section).c_str(), wide(key).c_str(), wide(value).c_str(),
                                 wide(path).c_str());
}

} // namespace zvonivec::modDeklarace
