#pragma once

class QString;

/// Turns on what the page can use and older engines keep behind a flag: the CSS Custom Highlight
/// API (W3C, css-highlight-api-1), which is on by itself from Chromium 105. The engine reads the
/// flags in `QTWEBENGINE_CHROMIUM_FLAGS` when it starts; this runs when the library is loaded, and
/// again before the control starts the engine. Afterwards it has no effect, and the page does
/// without.
void EnableEngineFeatures();

/// `flags` with that feature among them. What the host has put there stays; so does the feature's
/// being off, where the host has turned it off.
QString WithEngineFeatures(const QString& flags);
