#pragma once

#include "html/ScanResult.h"

#include <QString>
#include <QStringView>

namespace html {

// Copies the inside of a body and leaves out or replaces pieces of it on the way. Pieces are told
// in document order; those in front of the body are passed over.
class BodySplicer {
public:
    BodySplicer(QStringView html, qsizetype bodyBegin)
        : m_html(html)
        , m_copied(bodyBegin)
        , m_cut{bodyBegin, bodyBegin}
    {
        m_result.reserve(html.size() - bodyBegin);
    }
    void cut(const Piece& piece);
    void replace(const Piece& piece, const QString& text);
    // The result, once every piece was told.
    QString take();

private:
    void copyUpTo(qsizetype position);
    void finishCut();
    bool cutWouldJoin() const;

    QStringView m_html;
    qsizetype m_copied; // everything before is in the result, or left out
    Piece m_cut; // the last cut, adjoining ones taken together; empty if there is none
    QString m_result;
};

} // namespace html
