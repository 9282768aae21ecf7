#include "platform/HoverFrame.h"

#include "platform/Language.h"

#include <QEvent>
#include <QPainter>
#include <QWidget>

namespace {

constexpr int lineWidth = 3;
constexpr int radius = 6;
constexpr int veilAlpha = 28;
constexpr int labelPadding = 8;
constexpr int labelDistance = 24; ///< From the lower edge.

QString labelOf(DragFate fate)
{
    switch (fate) {
    case DragFate::Taken:
        return InLanguage("Drop to add as attachments", "松开鼠标，添加为附件");
    case DragFate::ReadOnly:
        return InLanguage("The note is read-only", "只读笔记，不能添加附件");
    case DragFate::Refused:
        break;
    }
    return InLanguage("Cannot be added", "不能添加");
}

} // namespace

class HoverFrame::Frame : public QWidget {
public:
    // The widget's sibling and not its child: a widget that is drawn as a texture, as a browser's
    // is, does not clean up behind a child that goes.
    explicit Frame(QWidget* window)
        : QWidget(window->parentWidget() ? window->parentWidget() : window)
        , m_window(window)
    {
        setObjectName(QStringLiteral("hoverFrame"));
        // Drags, too, look through it for what lies below.
        setAttribute(Qt::WA_TransparentForMouseEvents);
        cover();
        window->installEventFilter(this);
        show();
        raise();
    }

    void setFate(DragFate fate)
    {
        m_group = fate == DragFate::Taken ? QPalette::Active : QPalette::Disabled;
        setAccessibleName(labelOf(fate));
        update();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::Resize:
            cover();
            break;
        // While something is dragged the mouse belongs to the drag: its source has gone without a
        // word, as a program that dies does.
        case QEvent::MouseMove:
        case QEvent::MouseButtonPress:
        case QEvent::Wheel:
            hide();
            deleteLater();
            break;
        default:
            break;
        }
        return false;
    }

    void paintEvent(QPaintEvent*) override
    {
        const QColor colour = palette().color(m_group, QPalette::Highlight);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QColor veil = colour;
        veil.setAlpha(veilAlpha);
        painter.setBrush(veil);
        painter.setPen(QPen(colour, lineWidth));
        constexpr qreal inset = lineWidth / 2.0 + 1;
        painter.drawRoundedRect(
            QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
        paintLabel(painter, colour);
    }

private:
    void cover()
    {
        setGeometry(m_window == parentWidget() ? m_window->rect() : m_window->geometry());
    }

    void paintLabel(QPainter& painter, const QColor& colour)
    {
        const QString text = accessibleName();
        QRect place = painter.fontMetrics().boundingRect(text).adjusted(
            -2 * labelPadding, -labelPadding, 2 * labelPadding, labelPadding);
        place.moveCenter(rect().center());
        place.moveBottom(height() - labelDistance);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawRoundedRect(place, radius, radius);
        painter.setPen(palette().color(m_group, QPalette::HighlightedText));
        painter.drawText(place, Qt::AlignCenter, text);
    }

    QWidget* const m_window;
    QPalette::ColorGroup m_group = QPalette::Active;
};

DropTargetHelper::~DropTargetHelper() = default;

HoverFrame::~HoverFrame()
{
    delete m_frame;
}

void HoverFrame::DragEnter(QWidget* window, DragFate fate)
{
    delete m_frame;
    if (window)
        m_frame = new Frame(window);
    DragOver(fate);
}

void HoverFrame::DragOver(DragFate fate)
{
    if (m_frame)
        m_frame->setFate(fate);
}

void HoverFrame::DragLeave()
{
    delete m_frame;
}

void HoverFrame::Drop()
{
    delete m_frame;
}
