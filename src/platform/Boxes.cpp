#include "platform/Boxes.h"

#include <QApplication>
#include <QMessageBox>

Boxes::~Boxes() = default;

void DesktopBoxes::message(const QString& text)
{
    BCGPMessageBox(text);
}

int BCGPMessageBox(const QString& text, unsigned, QWidget* parent, const QString*)
{
    // The active modal widget is the parent, so that a box never opens under a topmost dialog.
    QWidget* above = parent ? parent : QApplication::activeModalWidget();
    if (!above)
        above = QApplication::activeWindow();
    QMessageBox box(above);
    box.setText(text);
    // The text may come from the page: it is never markup.
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(QApplication::applicationDisplayName());
    box.setStandardButtons(QMessageBox::Ok);
    return box.exec();
}
