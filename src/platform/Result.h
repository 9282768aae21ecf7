#pragma once

/// Results of the operations that the browser calls: `S_OK` keeps a key or a drag from the
/// browser, `E_NOTIMPL` lets it pass.
inline constexpr long S_OK = 0;
inline constexpr long S_FALSE = 1;
inline constexpr long E_NOTIMPL = long(0x80004001);

/// Results of a page call (`IEWebBrowser::ExecJSFun`) beside `S_OK`.
inline constexpr long PAGE_CALL_FAILED = 1; ///< The live page failed, or there is none yet.
inline constexpr long PAGE_CALL_LOST = 2; ///< The render process died during the call.
inline constexpr long PAGE_CALL_NOT_BACK =
    3; ///< The page died and is not back, or there is none any more.
