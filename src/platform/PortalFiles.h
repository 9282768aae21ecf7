#pragma once

#include <QByteArray>
#include <QStringList>

class QMimeData;

/// Files that a program in a sandbox offers by drag or clipboard: not by their paths, which mean
/// nothing outside of it, but by a key, for which the desktop's document portal gives paths that
/// do (interface org.freedesktop.portal.FileTransfer of xdg-desktop-portal).
namespace portal {

/// The key, or empty if the data offers no files in that way.
QByteArray TransferKey(const QMimeData& data);

/// The paths of the files behind a key, in the order of their offer. Empty if there is no portal,
/// or it does not know the key, or gives no answer within two seconds. `connection` names a
/// connection to a bus that has been made; the default is the session's.
///
/// A portal ends a transfer once its files have been asked for. A drag that leaves and enters again
/// has the same key, so the answer to the last key is remembered.
QStringList RetrieveFiles(const QByteArray& key, const QString& connection = QString());

} // namespace portal
