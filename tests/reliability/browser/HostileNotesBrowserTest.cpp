// Notes that want more than to be read: through a load, a save, a paste and a drop. No script runs,
// no request leaves, nothing navigates, no file is read, and no call reaches the program.

#include "reliability/browser/HostileNotes.h"
#include "reliability/browser/OpenNoteFixture.h"

#include "notestore/NoteHtmlRW.h"

#include <QDesktopServices>
#include <QImage>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>

#include <sys/inotify.h>
#include <unistd.h>

namespace {

/// Hands the page's calls on and keeps them.
class HeardCalls : public IJSCallFunNotify {
public:
    QStringList calls;

    explicit HeardCalls(IJSCallFunNotify& next)
        : m_next(next)
    {
    }
    long OnGetFunId(const QString& name) override { return m_next.OnGetFunId(name); }
    long OnExecuteFun(
        long id, const DISPPARAMS& params, VARIANT& result, QString& exception) override
    {
        QStringList arguments;
        for (auto each = params.rgvarg.rbegin(); each != params.rgvarg.rend(); ++each)
            arguments << each->bstrVal;
        calls << arguments.join(u' ');
        return m_next.OnExecuteFun(id, params, result, exception);
    }

private:
    IJSCallFunNotify& m_next;
};

/// A file that nobody may open.
class GuardedPicture {
public:
    GuardedPicture()
        : m_events(::inotify_init1(IN_NONBLOCK))
    {
        QImage picture(7, 5, QImage::Format_RGB32);
        picture.fill(Qt::red);
        EXPECT_TRUE(picture.save(path()));
        EXPECT_GE(::inotify_add_watch(m_events, QFile::encodeName(path()).constData(), IN_OPEN), 0);
    }
    ~GuardedPicture() { ::close(m_events); }
    GuardedPicture(const GuardedPicture&) = delete;
    GuardedPicture& operator=(const GuardedPicture&) = delete;

    QString path() const { return m_dir.filePath(QStringLiteral("secret.png")); }
    QString address() const { return QUrl::fromLocalFile(path()).toString(); }
    /// Since the last call.
    bool wasOpened() const
    {
        char bytes[4096];
        return ::read(m_events, bytes, sizeof bytes) > 0;
    }

private:
    QTemporaryDir m_dir;
    const int m_events;
};

/// What a link would open outside.
class Opened : public QObject {
    Q_OBJECT
public:
    QStringList addresses;

    Opened()
    {
        for (const char* scheme : schemes)
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "open");
    }
    ~Opened() override
    {
        for (const char* scheme : schemes)
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
    }
    Q_INVOKABLE void open(const QUrl& url) { addresses << url.toString(); }

private:
    static constexpr const char* schemes[] = {"http", "https", "mailto", "file", "ftp",
        "javascript", "vbscript", "data", "about", "blob", "intent", "ws"};
};

class NoRequests : public QWebEngineUrlRequestInterceptor {
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
    void interceptRequest(QWebEngineUrlRequestInfo& info) override
    {
        const QString scheme = info.requestUrl().scheme();
        info.block(scheme != u"data" && scheme != u"about");
    }
};

/// What `top.hit` and messages told, in the page itself.
constexpr auto hitScript =
    "window.hits = []; window.hit = n => void hits.push(n);"
    "addEventListener('message', e => typeof e.data === 'number' && hits.push(e.data));";

/// Shows what it is given and goes nowhere from there.
class StandingPage : public QWebEnginePage {
public:
    using QWebEnginePage::QWebEnginePage;

protected:
    bool acceptNavigationRequest(const QUrl&, NavigationType type, bool) override
    {
        return type == NavigationTypeTyped;
    }
};

/// An ordinary browser without any of the page's locks: what is filed does no harm there either.
class OrdinaryBrowser {
public:
    OrdinaryBrowser()
        : m_page(&m_profile)
    {
        m_profile.setUrlRequestInterceptor(new NoRequests(&m_profile));
        QWebEngineScript script;
        script.setInjectionPoint(QWebEngineScript::DocumentCreation);
        script.setWorldId(QWebEngineScript::MainWorld);
        script.setSourceCode(QString::fromLatin1(hitScript));
        m_page.scripts().insert(script);
    }

    /// Whether a script ran when these are shown and everything in them is clicked.
    bool runs(const QString& html)
    {
        std::optional<bool> loaded;
        const auto end =
            QObject::connect(&m_page, &QWebEnginePage::loadFinished, [&](bool ok) { loaded = ok; });
        m_page.setHtml(QStringLiteral("<!DOCTYPE html><body>") + html);
        EXPECT_TRUE(waitFor([&] { return loaded.has_value(); })) << html.toStdString();
        QObject::disconnect(end);
        auto hits = std::make_shared<std::optional<int>>();
        m_page.runJavaScript(
            QStringLiteral("for (const e of document.querySelectorAll('*')) { e.click?.();"
                           " e.dispatchEvent(new MouseEvent('mouseover')); e.focus?.(); }"
                           " window.hits ? hits.length : -1"),
            [hits](const QVariant& value) { *hits = value.toInt(); });
        EXPECT_TRUE(waitFor([&] { return hits->has_value(); }));
        return hits->value_or(1) != 0;
    }

private:
    QWebEngineProfile m_profile;
    StandingPage m_page;
};

class HostileNotesIn : public OpenNoteFixture {
protected:
    QTcpServer server;
    int connections = 0;
    GuardedPicture guarded;
    Opened opened;
    std::unique_ptr<HeardCalls> heard;
    std::vector<HostileNote> notes;
    QString frameUrl; ///< As our own page leaves it.

    void SetUp() override
    {
        OpenNoteFixture::SetUp();
        QObject::connect(&server, &QTcpServer::newConnection, [this] { ++connections; });
        ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
        notes = hostileNotes(
            QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort()), guarded.address());
        ASSERT_GE(notes.size(), 150u);
        heard = std::make_unique<HeardCalls>(handler());
        control().SetJSCallFunNotify(heard.get());
        bench.js(QString::fromLatin1(hitScript) + u'1');
        frameUrl = bench.inNote(QStringLiteral("doc.URL")).toString();
        guarded.wasOpened();
    }

    void TearDown() override
    {
        control().SetJSCallFunNotify(&handler());
        EXPECT_EQ(connections, 0);
        // The server does hear those who speak to it.
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, server.serverPort());
        EXPECT_TRUE(socket.waitForConnected());
        EXPECT_TRUE(waitFor([&] { return connections == 1; }));
    }

    /// Marks the document that the note stands in, clicks and focuses everything in it, and waits
    /// until nothing in it is still on its way.
    void touchAll()
    {
        bench.inNote(QStringLiteral(
            "(() => { doc.mark = true; window.settled = false;"
            " for (const e of [...doc.querySelectorAll('*')].slice(0, 300)) {"
            "  e.focus?.(); e.click?.();"
            "  if (!e.click) e.dispatchEvent(new MouseEvent('click', {bubbles: true,"
            "   cancelable: true, view: doc.defaultView}));"
            "  for (const type of ['mouseover', 'mousedown', 'mouseup', 'auxclick', 'submit'])"
            "   e.dispatchEvent(new MouseEvent(type, {bubbles: true, cancelable: true, button: "
            "1}));"
            " } setTimeout(() => setTimeout(() => window.settled = true)); })()"));
        EXPECT_TRUE(waitFor([&] {
            return bench
                .js(QStringLiteral("window.settled && [...document.querySelector('iframe')"
                                   ".contentDocument.images].every(i => i.complete)"))
                .toBool();
        }));
    }

    void expectHarmless(const HostileNote& note, const char* way)
    {
        SCOPED_TRACE(QStringLiteral("%1, %2 %3: %4")
                         .arg(QString::fromLatin1(way), note.kind)
                         .arg(note.number)
                         .arg(note.html.left(300))
                         .toStdString());
        touchAll();
        const QString state =
            bench
                .js(QStringLiteral(
                    "(() => { const f = document.querySelector('iframe.ke-edit-iframe');"
                    " const w = f.contentWindow, doc = f.contentDocument;"
                    " const calls = ['CppProcessor', 'nomarPrivate', 'jsProcessor', 'qt'];"
                    " return [hits.splice(0).join(), document.title, document.querySelectorAll("
                    "'iframe').length, doc.URL, doc.mark, w.frames.length,"
                    " calls.filter(name => Object.hasOwn(w, name)).join(),"
                    " [...doc.images].some(i => i.naturalWidth && i.src.includes('secret'))"
                    "].join(); })()"))
                .toString();
        EXPECT_EQ(state, QStringLiteral(",NomarEditor,1,%1,true,0,,false").arg(frameUrl));
        EXPECT_EQ(bench.page()->url().fileName(), QStringLiteral("index.html"));
        EXPECT_EQ(heard->calls, QStringList());
        EXPECT_EQ(opened.addresses, QStringList());
        EXPECT_FALSE(guarded.wasOpened());
        heard->calls.clear();
        opened.addresses.clear();
    }

    /// Whether the guarded file is a picture of the text itself, which a paste brings in.
    bool hasPicture(const HostileNote& note) const
    {
        return note.html.contains(QStringLiteral("<img src=\"") + guarded.address())
            || note.html.contains(QStringLiteral("imagedata"));
    }

    /// All notes in the long run; else every fourth, so that each is tried in one way at least.
    std::vector<HostileNote> some(int first) const
    {
        std::vector<HostileNote> chosen;
        for (const HostileNote& note : notes) {
            if (figures::isDeep() || note.number % 4 == first)
                chosen.push_back(note);
        }
        return chosen;
    }
};

} // namespace

TEST_F(HostileNotesIn, ALoadedNoteDoesNothing)
{
    for (const HostileNote& note : notes) {
        show(note.html);
        expectHarmless(note, "load");
    }
    figures::add("hostile notes loaded, none did anything", long(notes.size()));
}

TEST_F(HostileNotesIn, AnEditedAndFiledNoteDoesNothingHereNorInAnOrdinaryBrowser)
{
    const std::vector<HostileNote> chosen = some(0);
    OrdinaryBrowser ordinary;
    ASSERT_TRUE(ordinary.runs(QStringLiteral("<img src=x onerror=top.hit(1) onclick=top.hit(1)>")));
    for (const HostileNote& note : chosen) {
        show(note.html);
        bench.inNote(QStringLiteral("(doc.body.append('edited'), 1)"));
        host().saves.clear();
        control().SaveEditor();
        ASSERT_EQ(host().saves.size(), 1u) << note.html.toStdString();
        const QString file = host().saves[0].files[0].fileName;
        control().LoadEditor(guid, {file}, {}, 0);
        settle();
        expectHarmless(note, "save");
        QString filed;
        NOTE_HTML_VER_NUMBER version;
        ASSERT_TRUE(
            NoteHtmlRW::ReadHtmlTextFromFile(host().saves[0].files[0].filePath, filed, &version));
        EXPECT_FALSE(ordinary.runs(filed)) << note.html.toStdString() << "\nfiled as\n"
                                           << filed.left(2000).toStdString();
    }
    figures::add("hostile notes edited and filed, none did anything", long(chosen.size()));
}

TEST_F(HostileNotesIn, APastedTextDoesNothingHereNorInAnOrdinaryBrowser)
{
    const std::vector<HostileNote> chosen = some(1);
    OrdinaryBrowser ordinary;
    for (const HostileNote& note : chosen) {
        show(QStringLiteral("<p>before</p>"));
        paste(htmlData(note.html));
        if (hasPicture(note))
            guarded.wasOpened(); // Pasted pictures are read: that is what was pasted.
        expectHarmless(note, "paste");
        const QString pasted = html();
        EXPECT_FALSE(ordinary.runs(pasted)) << note.html.toStdString() << "\npasted as\n"
                                            << pasted.left(2000).toStdString();
    }
    figures::add("hostile notes pasted, none did anything", long(chosen.size()));
}

TEST_F(HostileNotesIn, ADroppedTextDoesNothing)
{
    const std::vector<HostileNote> chosen = some(2);
    QGuiApplication::clipboard()->clear();
    int taken = 0;
    for (const HostileNote& note : chosen) {
        show(QStringLiteral("<p>before</p>"));
        taken += drop(*htmlData(note.html));
        settle();
        expectHarmless(note, "drop");
    }
    EXPECT_EQ(taken, int(chosen.size()));
    figures::add("hostile notes dropped, none did anything", long(chosen.size()));
}

TEST_F(HostileNotesIn, LinksOfAReadOnlyNoteLeadToTheWebAndToMailAlone)
{
    const std::vector<HostileNote> chosen = some(3);
    for (const HostileNote& note : chosen) {
        show(note.html, 1);
        touchAll();
        EXPECT_EQ(bench.js(QStringLiteral("hits.splice(0).join()")).toString(), QString())
            << note.html.toStdString();
        for (const QString& call : heard->calls)
            EXPECT_TRUE(call.startsWith(QStringLiteral("OpenHyperLink {\"url\":\"http"))
                || call.startsWith(QStringLiteral("OpenHyperLink {\"url\":\"mailto:")))
                << call.toStdString() << "\nof " << note.html.toStdString();
        for (const QString& address : opened.addresses)
            EXPECT_TRUE(address.startsWith(QStringLiteral("http:"), Qt::CaseInsensitive)
                || address.startsWith(QStringLiteral("https:"))
                || address.startsWith(QStringLiteral("mailto:")))
                << address.toStdString();
        heard->calls.clear();
        opened.addresses.clear();
    }
    control().SetReadOnly(0);
}

#include "HostileNotesBrowserTest.moc"
