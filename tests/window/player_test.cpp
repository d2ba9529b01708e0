#include "tests/window/player_test.h"

#include "platform/window_place.h"
#include "tests/window/input.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <qtestsupport_core.h>
#include <qtestsupport_widgets.h>
#include <utility>

namespace zvonivec {

bool serveUntil(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 10000);
}

QWidget* widgetOf(const QWidget& window, const Control& control) {
    const QString name = QString::fromStdString(control.Name());
    return window.objectName() == name ? const_cast<QWidget*>(&window)
                                       : window.findChild<QWidget*>(name);
}

QImage pictureOf(QWidget& widget) {
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::black); // the window paints nothing outside its outline
    widget.render(&image);
    return image;
}

std::optional<std::string> FakeDialog::ShowOpen() {
    ++shown;
    if (During) {
        During();
    }
    if (answers.empty()) {
        return std::nullopt;
    }
    std::optional<std::string> answer = answers.front();
    answers.pop_front();
    return answer;
}

void FakeBoxes::MsgBox(const std::string& text, int style, const std::string& title) {
    boxes.push_back({text, style, title});
    if (During) {
        During();
    }
}

PlayerTest::PlayerTest() {
    renew();
}

void PlayerTest::renew() {
    player_.reset();
    auto engine = std::make_unique<FakeEngine>();
    auto dialog = std::make_unique<FakeDialog>();
    auto boxes = std::make_unique<FakeBoxes>();
    engine_ = engine.get();
    dialog_ = dialog.get();
    boxes_ = boxes.get();
    player_ = std::make_unique<frmPlayer>(frmPlayer::Parts{.engine = std::move(engine),
                                                           .dialog = std::move(dialog),
                                                           .boxes = std::move(boxes),
                                                           .programFolder = folder_.path()});
}

PlayerTest::~PlayerTest() = default;

void PlayerTest::start() {
    player_->Form_Load();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window()));
}

void PlayerTest::open(const std::string& path) {
    engine_->tracks.try_emplace(path);
    dialog_->answers.emplace_back(path);
    player_->OpenMp3File();
}

QWidget& PlayerTest::window() const {
    return *QWidget::find(player_->hWnd());
}

bool PlayerTest::isCentred() const {
    const QRectF screen = QGuiApplication::primaryScreen()->geometry();
    const QRectF now(placeOf(window()).value_or(QPointF()), window().size());
    return (now.center() - screen.center()).manhattanLength() <= 2;
}

QWidget& PlayerTest::popupWindow() {
    return *QWidget::find(popup().hWnd());
}

QWidget& PlayerTest::widgetOfControl(const Control& control) {
    QWidget* widget = widgetOf(window(), control);
    return widget != nullptr ? *widget : *widgetOf(popupWindow(), control);
}

namespace {

QPoint inWindow(const QWidget& widget, QPoint place) {
    return widget.mapTo(widget.window(), place);
}

} // namespace

void PlayerTest::press(const Control& control, Qt::MouseButton button, QPoint place) {
    const QWidget& widget = widgetOfControl(control);
    input::press(*widget.window()->windowHandle(), button, inWindow(widget, place));
}

void PlayerTest::release(const Control& control, Qt::MouseButton button, QPoint place) {
    const QWidget& widget = widgetOfControl(control);
    input::release(*widget.window()->windowHandle(), button, inWindow(widget, place));
}

void PlayerTest::click(const Control& control, Qt::MouseButton button, QPoint place) {
    press(control, button, place);
    release(control, button, place);
}

void PlayerTest::moveOver(const Control& control, QPoint place) {
    const QWidget& widget = widgetOfControl(control);
    input::move(*widget.window()->windowHandle(), inWindow(widget, place));
}

void PlayerTest::moveOverBody() {
    input::move(*window().windowHandle(), QPoint(30, 200));
}

bool PlayerTest::shows(const Image& image, std::size_t pictureNumber) const {
    const Picture picture = player_->imgList.ListImage(pictureNumber);
    return picture && image.ShownPicture() == picture;
}

void PlayerTest::expectLook(bool playing) const {
    expectControls(playing);
    EXPECT_EQ(player_->WMP->URL().empty(), !playing);
}

void PlayerTest::expectIdleLookWithFile(const std::string& path) const {
    expectControls(false);
    EXPECT_EQ(player_->WMP->URL(), path);
}

void PlayerTest::expectControls(bool playing) const {
    for (std::size_t i = 0; i < PLAYBACK_BUTTON_COUNT; ++i) {
        EXPECT_EQ(player_->imgButtons[i].Enabled(), playing) << i;
        EXPECT_TRUE(shows(player_->imgButtons[i], i + (playing ? 1 : 27))) << i;
    }
    EXPECT_EQ(player_->lblTime[0].Visible(), playing);
    EXPECT_EQ(player_->lblTime[1].Visible(), playing);
    EXPECT_EQ(player_->PB.Visible(), playing);
    const Colour colour = playing ? ENABLED_ITEM_COLOR : DISABLED_ITEM_COLOR;
    for (const std::size_t item : {1U, 4U, 5U, 6U, 7U, 8U}) {
        EXPECT_EQ(player_->Popup().lblPopup[item].ForeColor(), colour) << item;
    }
    EXPECT_EQ(player_->lbl_Info.Caption() == WELCOME_TEXT, !playing);
    EXPECT_EQ(player_->lbl_Info.Caption(), player_->lbl_Info_SH.Caption());
}

} // namespace zvonivec
