#pragma once

#include <QString>

#include <initializer_list>

// Generated documents for tests: the same seed gives the same text everywhere.
class HtmlGenerator {
public:
    explicit HtmlGenerator(quint64 seed)
        : m_state(seed)
    {
    }

    // A note as the page writes it: paragraphs, tables, lists, attachment elements; well formed.
    QString note();
    // Tags of every kind in any order, raw text, comments, templates, selects, tables, document
    // tags.
    QString soup();
    // The same with SVG and MathML, but without formatting elements, tables and selects, end tags
    // of p and br, and end tags that hold more than a name: in foreign content the oracle misreads
    // them, or they are read differently on purpose (the table in GumboTest.cpp).
    QString foreignSoup();
    // Elements with attributes of every form, broken ones included.
    QString attributes();
    // A note with random characters put in, taken out and cut off.
    QString damagedNote();

private:
    quint64 next();
    int below(int n) { return int(next() % quint64(n)); }
    bool oneIn(int n) { return below(n) == 0; }
    QString pick(std::initializer_list<const char*> choices);
    QString word();
    QString attachment();
    QString element(bool foreign);
    QString tag(bool foreign);
    QString attribute();
    QString value();
    QString rawText(bool foreign);
    QString mix(int length, bool foreign);

    quint64 m_state;
};
