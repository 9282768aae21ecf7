#include "highlight/Highlight.h"

#include "bridge/NotePage.h"
#include "support/Json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace {

/// The page paints no more hits of one word than that.
constexpr int mostHits = 1 << 20;

int nextPainting()
{
    static int painting = 0;
    return ++painting;
}

QString jsonText(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString paintRequest(int painting, const QString& keyword)
{
    return jsonText({{QStringLiteral("painting"), painting}, {QStringLiteral("keyword"), keyword}});
}

/// Names neighbours of one painting together: usually that is all there is.
QString removeRequest(const std::vector<HighlightSegment>& segments)
{
    QJsonArray runs;
    for (auto first = segments.begin(); first != segments.end();) {
        auto end = first + 1;
        while (end != segments.end() && end->painting == first->painting
            && end->index == (end - 1)->index + 1)
            ++end;
        runs.append(QJsonArray{first->painting, first->index, int(end - first)});
        first = end;
    }
    return jsonText({{QStringLiteral("segments"), runs}});
}

} // namespace

Highlight::Highlight(NotePage& page)
    : m_page(page)
{
}

int Highlight::HighlightText(const QString& keyword)
{
    const std::weak_ptr<const void> life = m_life;
    CancleHighlight();
    if (life.expired())
        return 0;
    if (keyword.isEmpty())
        return 1;
    const int painting = nextPainting();
    QString reply;
    const long code =
        m_page.request(QStringLiteral("highlight"), paintRequest(painting, keyword), reply);
    if (life.expired() || code != S_OK)
        return 0;
    const std::optional<JsonObject> answer = JsonObject::parse(reply);
    const int count = answer ? std::clamp(answer->integer("count"), 0, mostHits) : 0;
    for (int index = 0; index < count; ++index)
        m_highlightSegments.push_back({painting, index});
    return 1;
}

int Highlight::CancleHighlight()
{
    if (m_highlightSegments.empty())
        return 1;
    // Out of the member first: what is painted while this waits for the page is not to be lost.
    std::vector<HighlightSegment> segments = std::exchange(m_highlightSegments, {});
    const std::weak_ptr<const void> life = m_life;
    QString reply;
    const long code = m_page.request(QStringLiteral("unhighlight"), removeRequest(segments), reply);
    if (life.expired())
        return 0;
    if (code == S_OK) {
        const std::optional<JsonObject> answer = JsonObject::parse(reply);
        if (answer && answer->boolean("result"))
            return 1;
    }
    segments.insert(segments.end(), m_highlightSegments.begin(), m_highlightSegments.end());
    m_highlightSegments = std::move(segments);
    return 0;
}
