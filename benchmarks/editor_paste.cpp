// Pasting a megabyte of a word processor's HTML, against what cannot be saved: sanitising it and
// handing it to the engine's own command in a bare view, in one block: without that the command
// takes half a minute.

#include "Figure.h"
#include "editor_page.h"
#include "editor_sides.h"

#include <QFile>

#include <stdexcept>

namespace {

using namespace bench;

/// Paragraphs, a list and a table as word processors write them, over and over.
QString officeFragment(qsizetype characters)
{
    const QString paragraph = QStringLiteral(
        "<p class=MsoNormal style='margin-bottom:8.0pt;mso-pagination:widow-orphan'><b><span "
        "lang=EN-US\n"
        "style='font-size:11.0pt;font-family:\"Calibri\",sans-serif;mso-fareast-font-family:"
        "Calibri;color:#C00000'>"
        "Quarter %1</span></b><span lang=EN-US style='mso-bidi-font-family:Arial'> went as "
        "planned, and the next one "
        "begins with what was left over from it.</span><o:p></o:p></p>\n\n"
        "<p class=MsoListParagraph style='margin-left:.5in;text-indent:-.25in;mso-list:l0 level1 "
        "lfo1'>"
        "<![if !supportLists]><span style='font-family:Symbol'><span "
        "style='mso-list:Ignore'>&middot;<span "
        "style='font:7.0pt \"Times New Roman\"'>&nbsp;&nbsp;&nbsp;&nbsp; "
        "</span></span></span><![endif]>"
        "<span lang=EN-US>point number %1</span><o:p></o:p></p>\n\n"
        "<table class=MsoTableGrid border=1 cellspacing=0 cellpadding=0 "
        "style='border-collapse:collapse;"
        "mso-yfti-tbllook:1184'>\n <tr style='mso-yfti-irow:0'>\n  <td width=100 valign=top "
        "style='width:75.0pt;"
        "border:solid windowtext 1.0pt;mso-border-alt:solid windowtext .5pt;padding:0in 5.4pt 0in "
        "5.4pt'>\n"
        "  <p class=MsoNormal><span lang=EN-US>%1</span><o:p></o:p></p>\n  </td>\n "
        "</tr>\n</table>\n\n");
    QString body;
    for (int i = 0; body.size() < characters; ++i)
        body += paragraph.arg(i);
    return QStringLiteral("<html xmlns:o=\"urn:schemas-microsoft-com:office:office\"><head><meta "
                          "name=Generator "
                          "content=\"Microsoft Word 15\"><style>@list l0:level1 "
                          "{mso-level-number-format:bullet;}"
                          "</style></head><body lang=EN-US><!--StartFragment-->")
        + body + QStringLiteral("<!--EndFragment--></body></html>");
}

/// Until the page has painted and has nothing else to do.
QString whenIdle(const QString& action)
{
    return QStringLiteral("window.benchIdle = false; %1; requestAnimationFrame(() => "
                          "requestIdleCallback(() => { window.benchIdle = true; })); 0")
        .arg(action);
}

class OfficePaste {
public:
    OfficePaste()
    {
        QFile sanitiser(QStringLiteral(NOMAR_BENCH_SANITISER));
        if (!sanitiser.open(QIODevice::ReadOnly))
            throw std::runtime_error("no sanitiser at " NOMAR_BENCH_SANITISER);
        evaluate(m_bare.page(), QString::fromUtf8(sanitiser.readAll()) + QStringLiteral("; 0"));
        evaluate(m_bare.page(), QStringLiteral("window.benchHtml = %1; 0").arg(quoted(m_html)));
    }

    double ours()
    {
        Editor& editor = Editor::instance();
        editor.openEmpty();
        evaluate(editor.page(),
            QStringLiteral(
                "window.benchData = new DataTransfer(); benchData.setData('text/html', %1); 0")
                .arg(quoted(m_html)));
        settle(kPause);
        const double seconds = timed([&] {
            evaluate(editor.page(),
                whenIdle(kNoteBody
                    + QStringLiteral(
                        ".dispatchEvent(new ClipboardEvent('paste', {clipboardData: benchData, "
                        "bubbles: true, cancelable: true}))")));
            waitForPaint(editor.page(), QStringLiteral("window.benchIdle"));
        })();
        if (!evaluate(
                editor.page(), kNoteBody + QStringLiteral(".querySelectorAll('td').length > 500"))
                 .toBool())
            throw std::runtime_error("nothing was pasted");
        editor.openEmpty();
        return seconds;
    }

    double bare()
    {
        m_bare.assign(QStringLiteral("<div><br></div>"));
        evaluate(m_bare.page(), kNoteBody + QStringLiteral(".focus(); 0"));
        settle(kPause);
        const double seconds = timed([&] {
            evaluate(m_bare.page(),
                whenIdle(kNoteBody
                    + QStringLiteral(".ownerDocument.execCommand('insertHTML', false, "
                                     "'<div>' + DOMPurify.sanitize(benchHtml) + '</div>')")));
            waitForPaint(m_bare.page(), QStringLiteral("window.benchIdle"));
        })();
        if (!evaluate(
                m_bare.page(), kNoteBody + QStringLiteral(".querySelectorAll('td').length > 500"))
                 .toBool())
            throw std::runtime_error("nothing was inserted");
        m_bare.assign(QString());
        return seconds;
    }

private:
    static constexpr int kPause = 200;

    const QString m_html = officeFragment(1 << 20);
    BareView m_bare;
};

const Registration paste{
    "paste of 1 MB of office HTML", [] {
        OfficePaste office;
        return std::vector<Figure>{atMost(
            "paste of a 1 MB office fragment to idle, against sanitising "
            "it and insertHTML of the result",
            1.5, [&] { return office.ours(); }, [&] { return office.bare(); })};
    }};

} // namespace
