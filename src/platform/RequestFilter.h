#pragma once

#include <QString>
#include <QWebEngineUrlRequestInterceptor>

/// Lets the page read itself, its pictures and the attachment store, and nothing else: no network,
/// no other file, no link that leads out of these folders.
class RequestFilter : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

    /// Where a request for the local file `path` leads: `path` itself, the same file in the store
    /// when the page stands beside another `userdata`, or an empty text when it is refused.
    static QString allowedFile(const QString& path);
};
