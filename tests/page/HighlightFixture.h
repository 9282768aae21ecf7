// A note with search hits in it, painted in either way: by the engine's ranges, or by the overlay
// that stands in where the engine has none.
#pragma once

#include "Names.h"
#include "PageHarness.h"

#include <QElapsedTimer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

enum class Way { Ranges, Overlay };

inline constexpr QRgb kBackground = 0xffffff11;
inline constexpr QRgb kText = 0xff686868;

inline QString jsonText(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

class PageHighlight : public testing::TestWithParam<Way> {
protected:
    PageHarness page;
    int painting = 0;

    void load(const QString& html)
    {
        page.load(html);
        chooseWay();
    }
    /// Takes the engine's ranges from the page, as if it had none.
    void chooseWay()
    {
        if (GetParam() == Way::Overlay)
            page.js(u"Object.defineProperty(note.defaultView, 'CSS', { value: undefined })"_s);
    }

    /// Paints the hits of a word and gives their number.
    int highlight(const QString& word)
    {
        const QJsonObject reply = page.callPrivate(
            u"highlight"_s, jsonText({{u"painting"_s, ++painting}, {u"keyword"_s, word}}));
        EXPECT_TRUE(reply[u"result"].toBool());
        return reply[u"count"].toInt(-1);
    }
    bool remove(int of, int first, int count)
    {
        return page
            .callPrivate(u"unhighlight"_s,
                jsonText({{u"segments"_s, QJsonArray{QJsonArray{of, first, count}}}}))[u"result"]
            .toBool();
    }
    bool clear() { return remove(painting, 0, 1 << 20); }

    /// An expression of the text that is painted now, piece by piece in the order of the note.
    QString painted() const
    {
        return GetParam() == Way::Ranges
            ? u"(() => { const hits = note.defaultView.CSS.highlights.get('search-hit');"
              "  const ranges = [...(hits ?? [])].map(hit => {"
              "    const range = note.createRange();"
              "    range.setStart(hit.startContainer, hit.startOffset);"
              "    range.setEnd(hit.endContainer, hit.endOffset); return range; });"
              "  ranges.sort((a, b) => a.compareBoundaryPoints(Range.START_TO_START, b));"
              "  return ranges.map(String).join('|'); })()"_s
            : u"(() => { const boxes = [...document.querySelectorAll('.hits .hit')];"
              "  const at = box => box.getBoundingClientRect();"
              "  boxes.sort((a, b) => at(a).top - at(b).top || at(a).left - at(b).left);"
              "  return boxes.map(box => box.textContent).join('|'); })()"_s;
    }
    /// Waits until `expected` is painted, and nothing else.
    testing::AssertionResult paints(const QString& expected)
    {
        if (page.waitFor(painted() + u" === "_s + quoted(expected)))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "painted is " << page.jsText(painted()).toStdString();
    }

    int scrolled() { return page.js(u"note.scrollingElement.scrollTop"_s).toInt(); }
    bool isOnScreen(const QString& selector)
    {
        return page.jsBool(
            u"(() => { const box = note.querySelector(%1).getBoundingClientRect();"
            "  return box.top >= 0 && box.bottom <= note.documentElement.clientHeight; })()"_s.arg(
                quoted(selector)));
    }
    /// How many pixels of the element `selector` have this colour, on the screen.
    int pixels(const QString& selector, QRgb colour)
    {
        const QVariantList box =
            page.js(u"(() => { const box = note.querySelector(%1).getBoundingClientRect();"
                    "  const frame = document.querySelector('iframe').getBoundingClientRect();"
                    "  return [frame.x + box.x, frame.y + box.y, box.width, box.height]; })()"_s
                        .arg(quoted(selector)))
                .toList();
        const QImage screen = page.grab();
        int count = 0;
        for (int y = box[1].toInt(); y < box[1].toInt() + box[3].toInt(); ++y)
            for (int x = box[0].toInt(); x < box[0].toInt() + box[2].toInt(); ++x)
                count += screen.valid(x, y) && screen.pixel(x, y) == colour;
        return count;
    }
    bool waitForPixels(const QString& selector, QRgb colour, int atLeast)
    {
        QElapsedTimer timer;
        timer.start();
        while (pixels(selector, colour) < atLeast)
            if (timer.elapsed() > 10000)
                return false;
        return true;
    }
};
