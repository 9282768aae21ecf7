#include "support/Log.h"

#include "support/AppDirs.h"
#include "support/LogWriter.h"

#include <new>
#include <system_error>
#include <thread>

CLog4C::CLog4C()
    : m_writer(std::make_shared<LogWriter>(GetAppDir() + QStringLiteral("NomarEditor.log")))
{
    try {
        std::thread([writer = m_writer] { writer->run(); }).detach();
    } catch (const std::system_error&) {
        m_writer->setEnded(); // no thread to be had: the lines wait in vain
    }
}

CLog4C::~CLog4C()
{
    m_writer->stop();
    m_writer->waitForEnd(std::chrono::milliseconds(3000));
}

void CLog4C::WriteLog(const QString& message)
{
    try {
        m_writer->append(message);
    } catch (const std::bad_alloc&) {
        // No memory for the line, and nobody to tell.
    }
}

void CLog4C::WriteQueued()
{
    if (CLog4C* log = ExistingInstance())
        log->m_writer->pass();
}
