#include "platform/MessageBox.h"

#include "platform/DialogParent.h"

#include <QApplication>
#include <QMessageBox>

int BCGPMessageBox(const QString& text, unsigned, QWidget* parent, const QString*)
{
    QMessageBox box(parent ? parent : DialogParent());
    box.setText(text);
    box.setTextFormat(Qt::PlainText); // The text may come from the page: it is never markup.
    box.setWindowTitle(QApplication::applicationDisplayName());
    box.setStandardButtons(QMessageBox::Ok);
    return box.exec();
}
