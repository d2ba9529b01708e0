// Message boxes for systems that have none of their own. In the toolkit's message boxes a long path
// runs out of the window, and a long text out of the screen.

#include "platform/box_icon.h"
#include "platform/memory_return.h"
#include "platform/modDeklarace.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace zvonivec::modDeklarace {

namespace {

/// A text that can be selected and read as a whole: it breaks lines wherever it must, and it
/// scrolls when it is very long.
class BoxText : public QTextEdit {
public:
    /// The text takes no more than this width, in logical pixels.
    BoxText(const QString& text, int widest, const QSize& screen) {
        setObjectName(QStringLiteral("text"));
        setPlainText(text);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setFrameShape(QFrame::NoFrame);
        viewport()->setAutoFillBackground(false);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        // Windows' own boxes have a tab stop every eight characters.
        setTabStopDistance(8.0 * fontMetrics().averageCharWidth());

        const int highest = screen.height() * 2 / 3;
        const std::unique_ptr<QTextDocument> trial(document()->clone());
        trial->setTextWidth(-1); // breaks no line
        const int width = std::min(static_cast<int>(std::ceil(trial->idealWidth())) + 1, widest);
        trial->setTextWidth(width);
        int height = static_cast<int>(std::ceil(trial->size().height()));
        int room = width;
        if (height > highest) {
            height = highest;
            room += verticalScrollBar()->sizeHint().width();
            setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
        }
        setFixedSize(room, height);
    }
};

class Box : public QDialog {
public:
    Box(QWidget* owner, QString text) : QDialog(owner), text_(std::move(text)) {}
    [[nodiscard]] const QString& text() const { return text_; }

private:
    QString text_;
};

/// Reports a box as an alert, whose name is read first: the text.
class AccessibleBox : public QAccessibleWidget {
public:
    explicit AccessibleBox(Box* box)
        : QAccessibleWidget(box, QAccessible::AlertMessage, box->text()) {}
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Description ? widget()->windowTitle()
                                                : QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object) {
    auto* box = dynamic_cast<Box*>(object);
    return box != nullptr ? new AccessibleBox(box) : nullptr;
}

BoxIcon::Kind iconOf(int style) {
    return (style & ICON_INFORMATION) != 0 ? BoxIcon::Kind::information : BoxIcon::Kind::critical;
}

} // namespace

void MessageBoxA(std::uintptr_t owner, const std::string& text, const std::string& title,
                 int style) {
    QAccessible::installFactory(makeAccessible); // once, however often it is called
    const MemoryReturn giveBack;
    Box box(QWidget::find(owner), QString::fromStdString(text));
    box.setWindowTitle(QString::fromStdString(title));
    // Minimised, it would take the way back to the player with it.
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    auto* layout = new QGridLayout(&box);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    constexpr int spacing = 16;
    layout->setHorizontalSpacing(spacing);
    auto* icon = new BoxIcon(iconOf(style));
    layout->addWidget(icon, 0, 0, Qt::AlignTop);

    // The frame shows the title between an icon and buttons, whose sizes its window manager knows.
    constexpr int besideTitle = 100;
    constexpr int usualWidth = 420;
    QFont bold = box.font();
    bold.setBold(true);
    const QSize screen = box.screen()->availableSize();
    const int titleWidth = QFontMetrics(bold).horizontalAdvance(box.windowTitle()) + besideTitle;
    const QMargins margins = layout->contentsMargins();
    const int besideText = margins.left() + icon->width() + spacing + margins.right();
    const int halfScreen = screen.width() / 2;
    layout->setColumnMinimumWidth(1, std::min(titleWidth, halfScreen) - besideText);
    const int widest = std::min(std::max(usualWidth, titleWidth), halfScreen) - besideText;
    auto* shown = new BoxText(QString::fromStdString(text), widest, screen);
    layout->addWidget(shown, 0, 1, Qt::AlignVCenter);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    layout->addWidget(buttons, 1, 0, 1, 2);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    buttons->button(QDialogButtonBox::Ok)->setFocus();

    box.exec();
}

} // namespace zvonivec::modDeklarace
