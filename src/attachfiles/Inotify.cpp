#include "attachfiles/FolderEvents.h"

#include <cerrno>
#include <sys/inotify.h>
#include <unistd.h>

FolderEvents::~FolderEvents() = default;

namespace {

constexpr std::uint32_t kMask = IN_CLOSE_WRITE | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM
    | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

class Inotify : public FolderEvents {
public:
    Inotify()
        : m_descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
        , m_error(m_descriptor < 0 ? errno : 0)
    {
    }
    ~Inotify() override
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Inotify(const Inotify&) = delete;
    Inotify& operator=(const Inotify&) = delete;

    int add(const std::string& folder) override
    {
        if (m_error)
            return -m_error;
        const int watch = ::inotify_add_watch(m_descriptor, folder.c_str(), kMask);
        return watch < 0 ? -errno : watch;
    }

    void remove(int watch) override { ::inotify_rm_watch(m_descriptor, watch); }
    int descriptor() const override { return m_descriptor; }

    std::vector<FolderEvent> read() override
    {
        std::vector<FolderEvent> events;
        alignas(inotify_event) char buffer[64 * 1024];
        const ssize_t length = ::read(m_descriptor, buffer, sizeof buffer);
        for (const char* at = buffer; at < buffer + length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            append(*event, events);
            at += sizeof *event + event->len;
        }
        return events;
    }

private:
    static void append(const inotify_event& event, std::vector<FolderEvent>& events)
    {
        const std::uint32_t mask = event.mask;
        const auto kind = [mask] {
            if (mask & IN_Q_OVERFLOW)
                return FolderEvent::Overflow;
            if (mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT))
                return FolderEvent::SelfWent;
            if (!(mask & IN_ISDIR))
                return FolderEvent::File;
            return mask & IN_MOVED_FROM ? FolderEvent::FolderWent : FolderEvent::FolderCame;
        }();
        const bool isFileThatLeft = kind == FolderEvent::File && (mask & IN_MOVED_FROM);
        if ((mask & IN_IGNORED) || isFileThatLeft)
            return;
        events.push_back({kind, event.wd, event.len ? event.name : std::string()});
    }

    const int m_descriptor;
    const int m_error;
};

} // namespace

std::unique_ptr<FolderEvents> MakeInotify()
{
    return std::make_unique<Inotify>();
}
