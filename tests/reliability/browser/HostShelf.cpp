#include "reliability/browser/HostShelf.h"

#include "NoteText.h"
#include "Shelf.h"
#include "Store.h"

HostShelf::HostShelf()
    : m_shelf(std::make_unique<Shelf>())
{
}

HostShelf::~HostShelf() = default;

bool HostShelf::open(const QString& path)
{
    return m_shelf->open(path);
}

bool HostShelf::save(
    const QString& guid, const std::vector<NewAttachFile>& files, const QString& text)
{
    return m_shelf->saveNote(guid, files, text);
}

QString HostShelf::attachment(
    const QString& store, const QString& guid, const QString& fileName, const QString& origName)
{
    return attachmentFile(*m_shelf, store, guid, fileName, origName);
}

std::vector<QString> HostShelf::noteFiles(const QString& guid)
{
    return m_shelf->htmlFiles(guid);
}

int HostShelf::words(const QString& guid)
{
    const auto note = m_shelf->note(guid);
    return note ? note->words : 0;
}

int HostShelf::wordsOf(const QString& text)
{
    return countWords(text);
}
