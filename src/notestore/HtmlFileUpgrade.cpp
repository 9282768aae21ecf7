#include "notestore/HtmlFileUpgrade.h"

HtmlFileUpgradeMgr::HtmlFileUpgradeMgr()
{
    m_steps[0] = nullptr;
    m_steps[1] = nullptr;
    m_steps[2] = std::make_unique<HtmlVer_1_To_2>();
}

HtmlFileUpgradeMgr::~HtmlFileUpgradeMgr() = default;

int HtmlFileUpgradeMgr::DoUpgrade(
    const QString& inHtml, int fromVersion, int toVersion, QString& outHtml)
{
    const qint64 next = qint64(fromVersion) + 1;
    if (next > toVersion || next >= static_cast<qint64>(m_steps.size()))
        return 0;
    QString current = inHtml;
    QString result;
    // Kept: every step from there on runs, whatever `toVersion` is.
    for (const auto& [version, step] : m_steps) {
        if (version < next || !step)
            continue;
        if (!step->DoUpgrade(current, result))
            return 0;
        current = result;
    }
    outHtml = result;
    return 1;
}
