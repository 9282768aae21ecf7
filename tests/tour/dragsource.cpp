// A window to drag from, as a second program on the screen: files, a picture or a text.

#include <QCommandLineParser>
#include <QDrag>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QStyleHints>
#include <QUrl>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void tell(const char* line)
{
    std::puts(line);
    std::fflush(stdout);
}

/// What is to be dragged.
struct Offer {
    QStringList files;
    QString image; ///< Path of a picture that is offered as pixels and not as a file.
    QString text;
    Qt::DropActions actions;
    Qt::DropAction proposed;

    QMimeData* data() const
    {
        auto* data = new QMimeData;
        QList<QUrl> urls;
        for (const QString& file : files)
            urls.append(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()));
        if (!urls.isEmpty())
            data->setUrls(urls);
        if (!image.isEmpty())
            data->setImageData(QImage(image));
        if (!text.isEmpty())
            data->setText(text);
        return data;
    }
};

/// Any part of it can be dragged. Says when it is on the screen, and what became of a drag.
class Source : public QRasterWindow {
public:
    explicit Source(const Offer& offer)
        : m_offer(offer)
    {
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(QRect(QPoint(), size()), QColor(0x2f6fb7));
        painter.setPen(Qt::white);
        painter.drawText(QRect(QPoint(), size()), Qt::AlignCenter, title());
        if (!std::exchange(m_isShown, true))
            tell("ready");
    }

    void mousePressEvent(QMouseEvent* event) override { m_pressed = event->position(); }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        const qreal distance = (event->position() - m_pressed).manhattanLength();
        if (!event->buttons() || distance < QGuiApplication::styleHints()->startDragDistance())
            return;
        auto* drag = new QDrag(this);
        drag->setMimeData(m_offer.data());
        switch (drag->exec(m_offer.actions, m_offer.proposed)) {
        case Qt::CopyAction:
            return tell("copied");
        case Qt::MoveAction:
            return tell("moved");
        case Qt::LinkAction:
            return tell("linked");
        default:
            return tell("refused");
        }
    }

private:
    const Offer m_offer;
    QPointF m_pressed;
    bool m_isShown = false;
};

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(
        u"Offers files, a picture or a text to be dragged out of a small window. Prints a line "
        "when the window is on the screen (ready) and at the end of each drag (copied, moved, "
        "linked, refused)."_s);
    options.addHelpOption();
    options.addOptions({{u"at"_s, u"Upper left corner on the screen."_s, u"X,Y"_s, u"0,0"_s},
        {u"image"_s, u"Offers a picture's pixels."_s, u"FILE"_s},
        {u"text"_s, u"Offers a text."_s, u"TEXT"_s},
        {u"move"_s, u"Proposes to move, and offers to copy."_s},
        {u"move-only"_s, u"Offers nothing but to move."_s}});
    options.addPositionalArgument(u"files"_s, u"The files to offer."_s, u"[FILE…]"_s);
    options.process(app);

    Offer offer{options.positionalArguments(), options.value(u"image"_s), options.value(u"text"_s),
        Qt::CopyAction, Qt::CopyAction};
    if (options.isSet(u"move"_s)) {
        offer.actions = Qt::CopyAction | Qt::MoveAction;
        offer.proposed = Qt::MoveAction;
    } else if (options.isSet(u"move-only"_s)) {
        offer.actions = offer.proposed = Qt::MoveAction;
    }
    const QStringList corner = options.value(u"at"_s).split(u',');

    Source source(offer);
    source.setTitle(u"dragsource"_s);
    source.setFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    source.setGeometry(corner.value(0).toInt(), corner.value(1).toInt(), 120, 60);
    source.show();
    return app.exec();
}
