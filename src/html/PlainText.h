#pragma once

#include "html/OpenElements.h"
#include "html/Tokenizer.h"
#include "html/TreeRules.h"

#include <QString>
#include <QStringView>

namespace html {

// Writes the plain text of a body, line by line, by the rule of docs/plain-text.md. Fed in document
// order: the elements through the listener, the text through text().
class PlainTextWriter final : public ElementListener {
public:
    void opened(const OpenElement& element) override;
    void closed(const OpenElement& element) override;

    // A run of decoded text inside `parent`.
    void text(QStringView decoded, const OpenElement& parent);

    // The result, once everything was fed.
    QString take();

private:
    void lineEnd();
    void edge(const OpenElement& element);
    void write(QStringView run);

    QString m_text; // the finished lines, each with its LF, and behind them the line being written
    qsizetype m_lineBegin = 0;
    QChar m_separator; // null for none
};

} // namespace html
