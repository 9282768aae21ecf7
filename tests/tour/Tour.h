#pragma once

#include "DevTools.h"
#include "Host.h"
#include "Records.h"

#include <QImage>
#include <QRect>
#include <QRgb>
#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <stdexcept>

/// A step that did not come out as it should.
struct StepFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What a step can do: act on the host as a person does, and look at what came of it.
class Tour {
    QTemporaryDir m_dir; // made before all that lies in it

public:
    Tour(const QString& hostProgram, const QString& shotDir);

    /// Runs one step and prints its line. False: it failed.
    bool run(const char* name, const std::function<void(Tour&)>& step);

    // --- the host ---
    void startHost(const QString& language = QStringLiteral("en"), bool dark = false);
    void quitHost();
    QString appDir() const { return m_dir.filePath(QStringLiteral("notes")); }
    /// The paths that the host gave to the desktop to open, one a line.
    QString openedByDesktop() const;

    // --- acting ---
    void key(const QString& keys);
    void type(const QString& text);
    void clickAt(QPoint screen, int times = 1);
    /// Presses the mouse at one place and lets go at the other, by steps as a hand does.
    void pull(QPoint from, QPoint to);
    void rightClickAt(QPoint screen);
    /// Clicks the element of the page that `expression` yields.
    void clickElement(const QString& expression, int times = 1);
    /// Clicks the button of the page with that label.
    void clickButton(const QString& label);
    /// Clicks into the note, behind its last character.
    void clickNote();
    void clickRow(int row);
    /// Clicks at a point of the window, from its left or (negative) right edge and its top.
    void clickInWindow(int x, int y);
    QRect windowPlace();
    /// The middle of the bar below the page, on the screen.
    QPoint barPlace();
    /// Of the window that has the keyboard.
    QRect activeWindowPlace();
    /// Where a file of the user's lies; the folder is there.
    QString desktopFile(const QString& name) const;
    /// Drags files from another program's window into the middle of the note; a picture is taken
    /// over the note if it has a name.
    void drag(const QStringList& files, const QString& shotName = {});
    void shot(const QString& name);
    /// The whole screen as it is.
    static QImage screen();

    // --- looking ---
    QJsonValue page(const QString& expression) { return tools.evaluate(expression); }
    QString noteText();
    /// Whether the screen shows that colour somewhere.
    bool isShown(QRgb colour);
    /// Waits until the expression holds in the page.
    void expectPage(const QString& expression);
    /// Waits until what the page holds is on the screen, for the sake of a picture.
    void expectPainted();
    void expectText(const QString& text);
    void expect(const QString& what, const std::function<bool()>& holds, int milliseconds = 10'000);
    /// Waits until the program has that many windows on the screen.
    void expectWindow(const QString& program, int count);
    /// Waits until the note of that title is filed, and its file whole.
    void expectFiled(const QString& title, const QString& text);

    Host host;
    DevTools tools;
    Records records;

private:
    QString xdotool(const QStringList& arguments);
    QString window();
    void moveBySteps(QPoint from, QPoint to);
    QRect placeOf(const QString& window);
    void moveInWindow(int x, int y);
    /// Where the page's own coordinates begin on the screen. It has to be in sight.
    QPoint pageOrigin();

    const QString m_shotDir;
    std::optional<QPoint> m_pageOrigin;
    int m_shots = 0;
};

/// The editable document of the page, as a JavaScript expression.
inline const QString noteDocument =
    QStringLiteral("document.querySelector('iframe.ke-edit-iframe').contentDocument");
