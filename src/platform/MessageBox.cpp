#include "platform/MessageBox.h"

#include "platform/DialogParent.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>

int BCGPMessageBox(const QString& text, unsigned, QWidget* parent, const QString*)
{
    const QPointer<QMessageBox> box = new QMessageBox(parent ? parent : DialogParent());
    box->setText(text);
    box->setTextFormat(Qt::PlainText); // The text may come from the page: it is never markup.
    box->setWindowTitle(QApplication::applicationDisplayName());
    box->setStandardButtons(QMessageBox::Ok);
    const int answer = box->exec();
    // The window that it stands over takes it along when it goes.
    delete box.data();
    return answer;
}
