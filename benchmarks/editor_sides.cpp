#include "editor_sides.h"

#include "editor_page.h"

#include <nomareditor/AppDirs.h>
#include <nomareditor/WindowMessage.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <memory>
#include <stdexcept>

namespace bench {

namespace {

constexpr QSize kWindowSize{1000, 700};
constexpr int kChildAndVisible = 0x50000000;

std::unique_ptr<Editor> theEditor;

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

} // namespace

void waitUntil(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 60000)
            throw std::runtime_error("a condition never came true");
        settle(5);
    }
}

Editor& Editor::instance()
{
    if (!theEditor)
        theEditor.reset(new Editor);
    return *theEditor;
}

void Editor::close()
{
    theEditor.reset();
}

Editor::Editor()
{
    QDir(m_dir.path()).mkpath(QStringLiteral("userdata/attachment"));
    SetAppDir(m_dir.path());
    resize(kWindowSize);
    m_control = new CNomarEditorImpl;
    m_control->SetNmEditorNotify(this);
    if (!m_control->Create(this, rect(), 1, kChildAndVisible))
        throw std::runtime_error("the control could not be made");
    show();
    waitUntil([this] { return m_isReady; });
    handler().SetEditorMaxChars(1'000'000'000);
}

Editor::~Editor()
{
    delete m_control;
}

QWebEnginePage& Editor::page()
{
    return *m_control->findChild<QWebEngineView*>()->page();
}

bool Editor::event(QEvent* event)
{
    if (int(event->type()) == WM_EDITOR_READY)
        m_isReady = true;
    return QWidget::event(event);
}

QString Editor::store(const QByteArray& html)
{
    const QString name = QStringLiteral("note%1.html").arg(++m_stored);
    write(m_dir.filePath(QStringLiteral("userdata/attachment/") + name),
        "<!--{\"ver_number\":2}-->" + html);
    return name;
}

void Editor::open(const QString& fileName)
{
    m_control->LoadEditor(QStringLiteral("note"), {fileName}, {}, 0);
    waitUntilComplete();
}

void Editor::waitUntilComplete()
{
    QString html;
    m_control->GetLastHtml(html);
    // The page may bring a long note in by pieces; it is complete with its last paragraph.
    const qsizetype paragraphs = html.count(QStringLiteral("<p>"));
    waitFor(page(),
        QStringLiteral("%1.getElementsByTagName('p').length === %2")
            .arg(kNoteBody)
            .arg(paragraphs));
}

void Editor::openEmpty()
{
    QString guid;
    m_control->NewEditor(guid, 0);
    waitFor(page(), kNoteBody + QStringLiteral(".textContent.length < 2"));
}

QString Editor::pullReply()
{
    VARIANT reply;
    // The script's arguments in reverse.
    m_control->ExecJSFun(QStringLiteral("jsProcessor"),
        {VARIANT::Text(QStringLiteral("{}")), VARIANT::Text(QStringLiteral("GetEditorContent"))},
        reply);
    return reply.bstrVal;
}

void Editor::type(QChar character)
{
    activateWindow();
    QWidget* input = m_control->GetWebBrowseHwnd();
    input->setFocus();
    evaluate(page(),
        QStringLiteral("window.benchInputs = 0;"
                       "%1.ownerDocument.addEventListener('input', () => requestAnimationFrame("
                       "() => requestIdleCallback(() => ++window.benchInputs)), {once: true});"
                       "%1.focus()")
            .arg(kNoteBody));
    QTest::keyClick(input, character.toLatin1());
    // Until the character is painted and the page has nothing else to do: what is measured behind
    // it is not the key.
    waitFor(page(), QStringLiteral("window.benchInputs > 0"));
}

int Editor::OnSaveNote(const QString&, std::vector<NewAttachFile>&, const QString&)
{
    ++m_saves;
    return 1;
}

int Editor::OnOpenAttachment(const QString&, const QString&, const QString&)
{
    return 0;
}

BareView::BareView()
{
    const QString file = m_dir.filePath(QStringLiteral("bare.html"));
    write(file,
        "<!doctype html><meta charset=utf-8><title>bare</title>"
        "<style>html,body{margin:0;height:100%}iframe{border:0;width:100%;height:99%}</"
        "style><iframe></iframe>"
        "<script>document.querySelector('iframe').contentDocument.body.contentEditable = "
        "true</script>");
    bool loaded = false;
    QObject::connect(&m_view, &QWebEngineView::loadFinished, [&](bool) { loaded = true; });
    m_view.resize(kWindowSize);
    m_view.load(QUrl::fromLocalFile(file));
    m_view.show();
    waitUntil([&] { return loaded; });
    QObject::disconnect(&m_view, &QWebEngineView::loadFinished, nullptr, nullptr);
}

QString BareView::call(const QString& script)
{
    return evaluate(page(), script).toString();
}

void BareView::assign(const QString& html)
{
    page().runJavaScript(kNoteBody + QStringLiteral(".innerHTML = ") + quoted(html));
}

} // namespace bench
