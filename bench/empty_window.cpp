// An empty window of the toolkit: what the toolkit alone costs. It has some colours, by which the
// comparison recognises that it has been painted.

#include <QApplication>
#include <QPainter>
#include <QWidget>

namespace {

class EmptyWindow : public QWidget {
protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        constexpr int stripes = 6;
        for (int i = 0; i < stripes; ++i) {
            painter.fillRect(i * width() / stripes, 0, width() / stripes, height(),
                             QColor(30 * i, 20 * i, 10 * i));
        }
    }
};

} // namespace

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(count, arguments);
    EmptyWindow window;
    window.resize(337, 336);
    window.show();
    return QApplication::exec();
}
