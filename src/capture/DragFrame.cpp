#include "capture/DragFrame.h"

#include <QPainter>
#include <QWidget>

class DragFrame::Lines : public QWidget {
public:
    explicit Lines(QWidget* window)
        : QWidget(window)
    {
        setObjectName(QStringLiteral("dragFrame"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    void Place(const QRect& rect, const QSize& size)
    {
        m_size = size;
        setGeometry(rect);
        setVisible(!size.isEmpty());
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QRect inside =
            rect().adjusted(m_size.width(), m_size.height(), -m_size.width(), -m_size.height());
        for (const QRect& band : QRegion(rect()) - inside)
            painter.fillRect(band, QBrush(Qt::black, Qt::Dense4Pattern));
    }

private:
    QSize m_size;
};

DragFrame::DragFrame(QWidget* window)
    : m_window(window)
{
}

DragFrame::~DragFrame()
{
    delete m_lines;
}

void DragFrame::DrawDragRect(const QRect& rect, const QSize& size)
{
    if (!m_lines)
        m_lines = new Lines(m_window);
    m_lines->Place(rect, size);
}
