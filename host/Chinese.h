#pragma once

#include <QFile>
#include <QHash>
#include <QTranslator>

/// The window in Chinese: a line of res/zh.txt is an English text, a tab, and its translation.
/// A text that is not there stays English.
class Chinese : public QTranslator {
public:
    Chinese()
    {
        QFile file(QStringLiteral(":/zh.txt"));
        file.open(QIODevice::ReadOnly);
        for (const QByteArray& line : file.readAll().split('\n'))
            if (const qsizetype tab = line.indexOf('\t'); tab > 0)
                m_texts.insert(line.left(tab), QString::fromUtf8(line.mid(tab + 1)));
    }
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* text, const char*, int) const override
    {
        return m_texts.value(text);
    }

private:
    QHash<QByteArray, QString> m_texts;
};
