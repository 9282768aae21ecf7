#pragma once

#include <QString>

#include <map>
#include <memory>

/// The chain that turns the text of an older version into the current one, when it is saved again.
/// It works on text alone.

/// One step of the chain.
class IHtmlFileUpgrade {
public:
    virtual ~IHtmlFileUpgrade() = default;
    /// Non-zero on success. `inHtml` and `outHtml` may be the same string.
    virtual int DoUpgrade(const QString& inHtml, QString& outHtml) = 0;
};

/// Gives each attachment element of a version 1 text its `nm_exdata`.
///
/// Such an element is an `img` without `nm_exdata` whose class is a path; the path's last component
/// is taken for the original name. A text without one comes back as it stands. Otherwise the result
/// is the inside of the document's body, with no byte changed but for the new attributes.
/// Returns 0 if there is something to change but no body; a failure on the way is logged.
class HtmlVer_1_To_2 : public IHtmlFileUpgrade {
public:
    int DoUpgrade(const QString& inHtml, QString& outHtml) override;
};

/// Runs the steps between two versions. Owns them; made for one upgrade and dropped.
class HtmlFileUpgradeMgr {
public:
    HtmlFileUpgradeMgr();
    virtual ~HtmlFileUpgradeMgr();
    HtmlFileUpgradeMgr(const HtmlFileUpgradeMgr&) = delete;
    HtmlFileUpgradeMgr& operator=(const HtmlFileUpgradeMgr&) = delete;

    /// 1 on success. 0, with `outHtml` untouched, if a step failed or there is nothing to run from
    /// `fromVersion` to `toVersion`. `inHtml` and `outHtml` may be the same string.
    virtual int DoUpgrade(const QString& inHtml, int fromVersion, int toVersion, QString& outHtml);

private:
    std::map<int, std::unique_ptr<IHtmlFileUpgrade>> m_steps; // by the version that a step produces
};
