#include "platform/MessageBox.h"

#include <QApplication>
#include <QMessageBox>

int BCGPMessageBox(const QString& text, unsigned, QWidget* parent, const QString*)
{
    // Not the window alone: a box must never open under a topmost dialog.
    QWidget* above = parent ? parent : QApplication::activeModalWidget();
    if (!above)
        above = QApplication::activeWindow();
    QMessageBox box(above);
    box.setText(text);
    box.setTextFormat(Qt::PlainText); // The text may come from the page: it is never markup.
    box.setWindowTitle(QApplication::applicationDisplayName());
    box.setStandardButtons(QMessageBox::Ok);
    return box.exec();
}
