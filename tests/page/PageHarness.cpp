#include "PageHarness.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QInputMethodEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

#include <stdexcept>

namespace {

constexpr int kDeadline = 10000;

const char* kInjected = R"js(
(() => {
    const calls = [], posts = [];
    const fixed = (name, value) => Object.defineProperty(window, name, { value });
    fixed("recorded", { calls, posts });
    fixed("CppProcessor", (...args) => { calls.push(args); });
    fixed("nomarPrivate", Object.freeze({
        post: (kind, text) => { posts.push([kind, text]); },
        settings: Object.freeze({ language: %1, dark: %2 }),
    }));
    Object.defineProperty(window, "note", {
        get: () => document.querySelector("iframe.ke-edit-iframe").contentDocument });
})();
)js";

void copyPage(const QString& target)
{
    QDir().mkpath(target + QStringLiteral("/nmeditor"));
    QDir().mkpath(target + QStringLiteral("/userdata/attachment"));
    for (const char* name : {"index.html", "editor.js"}) {
        const QString file = QString::fromLatin1(name);
        QFile::copy(QStringLiteral(NOMAR_PAGE_DIR "/") + file,
            target + QStringLiteral("/nmeditor/") + file);
    }
}

void inject(QWebEnginePage* page, const PageHarness::Settings& settings)
{
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(QString::fromLatin1(kInjected).arg(quoted(settings.language),
        settings.dark ? QStringLiteral("true") : QStringLiteral("false")));
    page->scripts().insert(script);
}

} // namespace

QString quoted(const QString& text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

PageHarness::PageHarness()
    : PageHarness(Settings{})
{
}

PageHarness::PageHarness(const Settings& settings)
    : m_view(std::make_unique<QWebEngineView>())
{
    copyPage(m_root.path());
    inject(m_view->page(), settings);
    m_view->resize(settings.size);
    m_view->setZoomFactor(settings.zoom);
    m_view->show();
    m_view->load(QUrl::fromLocalFile(m_root.filePath(QStringLiteral("nmeditor/index.html"))));
    if (!waitFor(QStringLiteral("recorded.posts.some(post => post[0] === 'ready')"
                                " && document.querySelector('.toolbar button')")))
        throw std::runtime_error("the page is not ready");
}

PageHarness::~PageHarness() = default;

QVariant PageHarness::js(const QString& script)
{
    // The reply may come after the deadline: nothing of this frame may be referred to then.
    struct State {
        QVariant value;
        QEventLoop loop;
    };
    auto state = std::make_shared<State>();
    m_view->page()->runJavaScript(script, [state](const QVariant& value) {
        state->value = value;
        state->loop.quit();
    });
    QTimer::singleShot(kDeadline, &state->loop, &QEventLoop::quit);
    // A loop that is entered after idleness can miss its reply unless an event is waiting.
    QCoreApplication::postEvent(&state->loop, new QEvent(QEvent::User));
    state->loop.exec();
    return state->value;
}

bool PageHarness::waitFor(const QString& expression)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kDeadline) {
        if (jsBool(QStringLiteral("(() => { try { return !!(") + expression
                + QStringLiteral("); } catch { return false; } })()")))
            return true;
        QEventLoop pause;
        QTimer::singleShot(5, &pause, &QEventLoop::quit);
        pause.exec();
    }
    return false;
}

QString PageHarness::callRaw(const QString& method, const QString& argument)
{
    return jsText(QStringLiteral("jsProcessor(") + quoted(method) + QLatin1Char(',')
        + quoted(argument) + QLatin1Char(')'));
}

QJsonObject PageHarness::call(const QString& method, const QString& argument)
{
    return QJsonDocument::fromJson(callRaw(method, argument).toUtf8()).object();
}

QJsonObject PageHarness::callPrivate(const QString& kind, const QString& text)
{
    const QString reply = jsText(QStringLiteral("nomarPagePrivate(") + quoted(kind)
        + QLatin1Char(',') + quoted(text) + QLatin1Char(')'));
    return QJsonDocument::fromJson(reply.toUtf8()).object();
}

void PageHarness::load(const QString& html)
{
    call(QStringLiteral("SetEditorContent"), html);
    call(QStringLiteral("ClearEditorCache"), QString());
    if (!waitFor(QStringLiteral("!document.documentElement.classList.contains('loading')")))
        throw std::runtime_error("the note is not complete");
}

QList<NativeCall> PageHarness::calls(const QString& method)
{
    QList<NativeCall> found;
    const QVariantList all = js(QStringLiteral("recorded.calls")).toList();
    for (const QVariant& each : all) {
        const QVariantList arguments = each.toList();
        if (arguments.size() == 3 && arguments[0].toString() == method)
            found.append({method, arguments[1].toString(), arguments[2].toString()});
    }
    return found;
}

QStringList PageHarness::posts(const QString& kind)
{
    QStringList found;
    const QVariantList all = js(QStringLiteral("recorded.posts")).toList();
    for (const QVariant& each : all) {
        if (each.toList().value(0).toString() == kind)
            found.append(each.toList().value(1).toString());
    }
    return found;
}

void PageHarness::caret(const QString& selector, int offset)
{
    select(selector, offset, offset);
}

void PageHarness::select(const QString& selector, int start, int end)
{
    js(QStringLiteral(R"js((() => {
        const root = note.querySelector(%1), range = note.createRange();
        const place = (offset, set) => {
            const walker = note.createTreeWalker(root, NodeFilter.SHOW_TEXT);
            let text = walker.nextNode();
            if (!text) { set(root, 0); return; }
            while (offset > text.length) { offset -= text.length; text = walker.nextNode(); }
            set(text, offset);
        };
        place(%2, (n, o) => range.setStart(n, o));
        place(%3, (n, o) => range.setEnd(n, o));
        const selection = note.getSelection();
        selection.removeAllRanges();
        selection.addRange(range);
    })())js")
            .arg(quoted(selector))
            .arg(start)
            .arg(end));
}

void PageHarness::selectAll()
{
    js(QStringLiteral("note.getSelection().selectAllChildren(note.body)"));
}

void PageHarness::focusNote()
{
    m_view->activateWindow();
    input()->setFocus();
    callPrivate(QStringLiteral("focus"));
    waitFor(QStringLiteral("note.hasFocus()"));
}

QWidget* PageHarness::input()
{
    return m_view->focusProxy() ? m_view->focusProxy() : m_view.get();
}

void PageHarness::act(const QString& lastEvent, const std::function<void()>& input)
{
    // Input and scripts reach the page by different ways: only the event itself tells that it came.
    js(QStringLiteral(R"js((() => {
        window.seen = 0;
        window.watched ??= new WeakSet();
        for (const doc of [document, note]) {
            if (watched.has(doc.documentElement)) continue;
            watched.add(doc.documentElement);
            for (const name of ["keyup", "click", "auxclick", "dblclick", "contextmenu",
                     "compositionupdate", "compositionend"]) {
                doc.defaultView.addEventListener(name, event => setTimeout(() => {
                    if (event.type === window.awaited) window.seen++;
                }), true);
            }
        }
        window.awaited = %1;
    })())js")
            .arg(quoted(lastEvent)));
    input();
    waitFor(QStringLiteral("window.seen > 0"));
}

void PageHarness::type(const QString& text)
{
    for (const QChar c : text) {
        act(QStringLiteral("keyup"), [&] {
            QTest::sendKeyEvent(
                QTest::Click, input(), Qt::Key(c.toUpper().unicode()), c, Qt::NoModifier);
        });
    }
}

void PageHarness::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    act(QStringLiteral("keyup"), [&] { QTest::keyClick(input(), key, modifiers); });
}

void PageHarness::compose(const QString& text)
{
    QList<QInputMethodEvent::Attribute> attributes;
    attributes.append({QInputMethodEvent::Cursor, int(text.size()), 1});
    QInputMethodEvent event(text, attributes);
    act(QStringLiteral("compositionupdate"), [&] { QCoreApplication::sendEvent(input(), &event); });
}

void PageHarness::commit(const QString& text)
{
    QInputMethodEvent event;
    event.setCommitString(text);
    act(QStringLiteral("compositionend"), [&] { QCoreApplication::sendEvent(input(), &event); });
}

QPoint PageHarness::centre(const QString& document, const QString& selector)
{
    const QVariantList place = js(QStringLiteral(R"js((() => {
        const element = %1.querySelector(%2);
        if (!element) return null;
        element.scrollIntoView({ block: "nearest" });
        const box = element.getClientRects()[0];
        const frame = element.ownerDocument === document ? { left: 0, top: 0 }
            : document.querySelector("iframe").getBoundingClientRect();
        return [frame.left + box.left + box.width / 2, frame.top + box.top + box.height / 2];
    })())js")
                                      .arg(document, quoted(selector)))
                                   .toList();
    if (place.size() != 2)
        throw std::runtime_error("no such element: " + selector.toStdString());
    const double zoom = m_view->zoomFactor();
    return QPoint(int(place[0].toDouble() * zoom), int(place[1].toDouble() * zoom));
}

void PageHarness::clickNote(
    const QString& selector, Qt::KeyboardModifiers modifiers, Qt::MouseButton button)
{
    const QPoint point = centre(QStringLiteral("note"), selector);
    const QString last = button == Qt::LeftButton ? QStringLiteral("click")
        : button == Qt::RightButton               ? QStringLiteral("contextmenu")
                                                  : QStringLiteral("auxclick");
    act(last, [&] { QTest::mouseClick(input(), button, modifiers, point); });
}

void PageHarness::doubleClickNote(const QString& selector)
{
    const QPoint point = centre(QStringLiteral("note"), selector);
    act(QStringLiteral("dblclick"), [&] {
        // Not by QTest, which sets its clicks so far apart that the engine never counts two.
        static ulong now = 1000000;
        now += 10000;
        for (const auto& [type, held] : {std::pair(QEvent::MouseButtonPress, Qt::LeftButton),
                 std::pair(QEvent::MouseButtonRelease, Qt::NoButton),
                 std::pair(QEvent::MouseButtonDblClick, Qt::LeftButton),
                 std::pair(QEvent::MouseButtonRelease, Qt::NoButton)}) {
            QMouseEvent event(
                type, point, input()->mapToGlobal(point), Qt::LeftButton, held, Qt::NoModifier);
            event.setTimestamp(now += 20);
            QCoreApplication::sendEvent(input(), &event);
        }
    });
}

void PageHarness::clickPage(const QString& selector)
{
    const QPoint point = centre(QStringLiteral("document"), selector);
    act(QStringLiteral("click"),
        [&] { QTest::mouseClick(input(), Qt::LeftButton, Qt::NoModifier, point); });
}

void PageHarness::clickTool(const QString& label)
{
    clickPage(QStringLiteral(".toolbar [aria-label=%1]").arg(quoted(label)));
}

void PageHarness::chooseMenu(const QString& label)
{
    js(QStringLiteral("[...document.querySelectorAll('.menu-item')].find(item => "
                      "item.querySelector('.menu-text').textContent === %1).click()")
            .arg(quoted(label)));
}

QImage PageHarness::grab()
{
    return m_view->grab().toImage();
}
