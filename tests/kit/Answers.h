#pragma once

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <functional>

/// The user of a test: answers each modal dialog that comes up, and keeps the texts of the boxes.
class Answers {
public:
    /// Called with a dialog that is no message box, again and again until it returns true.
    using Act = std::function<bool(QDialog*)>;

    explicit Answers(Act act = {})
        : m_act(std::move(act))
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { answer(); });
        m_timer.start(5);
    }
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;

    QStringList texts;

    /// Goes to a folder in a file dialog, types into its name field and ends it with a key.
    static Act choose(const QString& folder, const QString& typed, Qt::Key key = Qt::Key_Return)
    {
        return [=](QDialog* dialog) {
            auto* files = qobject_cast<QFileDialog*>(dialog);
            if (files->directory() != QDir(folder))
                files->setDirectory(folder);
            // Until the folder is listed, the dialog itself still changes the name field.
            const auto* list = dialog->findChild<QListView*>(QStringLiteral("listView"));
            if (list->model()->rowCount(list->rootIndex()) == 0)
                return false;
            auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            QTest::keyClicks(name, typed);
            // As on a desktop, keys go to the list of completions while it stands.
            while (QWidget* popup = QApplication::activePopupWidget())
                QTest::keyClick(popup, Qt::Key_Escape);
            QTest::keyClick(name, key);
            return true;
        };
    }

private:
    void answer()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
            texts << box->text();
            QTest::keyClick(box, Qt::Key_Return);
        } else if (m_act && m_act(dialog)) {
            m_act = nullptr;
        }
    }

    Act m_act;
    QTimer m_timer;
};
