#pragma once

#include "platform/Variant.h"

#include <QString>

/// What the page can ask for: its seven calls, decoded.
class PageRequests {
public:
    virtual ~PageRequests();

    virtual void dblClickAttachment(const QString& path, const QString& origName) = 0;
    virtual void addAttachment() = 0;
    virtual void openHyperLink(const QString& url) = 0;
    virtual void nmMessageBox(const QString& msg) = 0;
    virtual void rightClickAttach(
        const QString& fileName, const QString& origName, const QString& rangeHtml) = 0;
    virtual void writeEditorLog(const QString& type, const QString& msg) = 0;
    virtual void screenCapture(bool hideMainWnd) = 0;
};

/// Decodes a call of "CppProcessor": the method, its JSON text, its extra text (in reverse, as the
/// call interface has them), and hands it to `requests`. A wrong number of arguments and a JSON
/// text that cannot be parsed are logged, and nothing else happens; an unknown method is dropped
/// without a trace. Always returns 0.
long DispatchPageCall(const DISPPARAMS& params, PageRequests& requests);

/// The name in the store out of a path in a note, as the page's calls give it: the text behind the
/// last backslash, all of it if there is none.
QString FileNameOfNotePath(const QString& path);
