#include "controls/MsgBox.h"

#include "controls/Form.h"

#include <QMessageBox>
#include <QWidget>

namespace zvonivec {

void ModalMessageBoxes::MsgBox(const std::string& text, int style, const std::string& title) {
    const auto icon = (style & vbInformation) != 0 ? QMessageBox::Information
                      : (style & vbCritical) != 0  ? QMessageBox::Critical
                                                   : QMessageBox::NoIcon;
    QMessageBox box(icon, QString::fromStdString(title), {}, QMessageBox::Ok,
                    owner_ != nullptr ? QWidget::find(owner_->hWnd()) : nullptr);
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setText(QString::fromStdString(text));
    box.exec();
}

} // namespace zvonivec
