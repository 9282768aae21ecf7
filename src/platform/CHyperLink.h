#pragma once

#include <QString>

/// Links that leave the system.
class CHyperLink {
public:
    /// Opens `url` in the user's browser or mail program. Only absolute `http`, `https` and
    /// `mailto` addresses leave; any other is ignored and false is returned, as it is when the
    /// desktop refuses.
    static bool OpenLink(const QString& url);
};
