// The up-down view while its window is being resized, against a splitter of Qt's with the same
// panes.

#include "Figure.h"

#include <nomareditor/CNomarUpDownView.h>

#include <QApplication>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTest>
#include <QTreeWidget>

#include <stdexcept>

namespace {

using namespace bench;

constexpr QSize kLargest(900, 700);
constexpr int kSteps = 120;

QWidget* text()
{
    auto* edit = new QPlainTextEdit;
    edit->setPlainText(QStringLiteral("A line of a note, 一行笔记。\n").repeated(60));
    return edit;
}

QWidget* list()
{
    auto* tree = new QTreeWidget;
    tree->setColumnCount(4);
    for (int row = 0; row < 20; ++row) {
        const QString number = QString::number(row);
        tree->addTopLevelItem(new QTreeWidgetItem(
            {QStringLiteral("file ") + number, QStringLiteral("PDF document"), number, number}));
    }
    return tree;
}

/// A window on the screen with a view of either kind in it.
class Window : public QWidget {
public:
    Window()
    {
        resize(kLargest);
        show();
        if (!QTest::qWaitForWindowExposed(this))
            throw std::runtime_error("the window is not on the screen");
    }

    /// Every step of a drag of the view's corner, laid out and painted.
    void drag(QWidget& view)
    {
        for (int step = 0; step < kSteps; ++step) {
            view.resize(kLargest - QSize(2, 3) * (step < kSteps / 2 ? step : kSteps - step));
            QApplication::sendPostedEvents();
            view.repaint();
        }
    }
};

const Registration resize{
    "layout", [] {
        Window ours, peers;
        auto* view = new CNomarUpDownView;
        view->Create(&ours, QRect(QPoint(), kLargest), 1);
        view->SetSplitterWnd(text(), list());
        auto* splitter = new QSplitter(Qt::Vertical, &peers);
        splitter->addWidget(text());
        splitter->addWidget(list());
        splitter->setStretchFactor(0, 1);
        splitter->setHandleWidth(8);
        splitter->resize(kLargest);
        splitter->setSizes({482, 210});
        splitter->show();
        return std::vector<Figure>{
            atMost("laying out and repainting the view on a resize drag, against QSplitter", 1.2,
                timed([&] { ours.drag(*view); }), timed([&] { peers.drag(*splitter); }), 9)};
    }};

} // namespace
