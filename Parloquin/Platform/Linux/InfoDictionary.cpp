#include "Parloquin/Platform/InfoDictionary.h"

#include "Parloquin/Platform/Linux/BinaryPropertyList.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QResource>

#include <fcntl.h>
#include <plist/plist.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <set>
#include <variant>

namespace parloquin {

namespace {

constexpr qint64 sizeLimit = 65536; // bytes; a list is a few hundred

/// Why a list cannot be read. The empty fault: there is none.
using Fault = QString;
using Contents = std::variant<QByteArray, Fault>;

struct FreePlist {
    void operator()(plist_t node) const { plist_free(node); }
};
using Plist = std::unique_ptr<std::remove_pointer_t<plist_t>, FreePlist>;

class Descriptor {
public:
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    ~Descriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Q_DISABLE_COPY_MOVE(Descriptor)
    [[nodiscard]] int get() const { return m_fd; }

private:
    int m_fd;
};

QString systemText(int code) { return QString::fromLocal8Bit(std::strerror(code)); }

Fault oversized() { return QStringLiteral("is over 64 KiB; leave only the keys that are needed"); }

// Every request asks, so a fault would otherwise fill the console.
void reportOnce(const QString &file, const Fault &fault)
{
    static std::mutex mutex;
    static std::set<QString> reported;
    const QString line = QStringLiteral("Parloquin: %1 %2.\n").arg(file, fault);
    const std::lock_guard lock(mutex);
    if (reported.insert(line).second)
        std::fputs(line.toUtf8().constData(), stderr);
}

Contents readFile(const QString &program, const QString &path)
{
    // Not blocking: opening a pipe that nobody writes to would never return.
    const Descriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (file.get() < 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return Fault();
        return QStringLiteral("cannot be read (%1); let this user read it").arg(systemText(errno));
    }

    struct stat info { };
    struct stat own { };
    if (::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return QStringLiteral("is no regular file; put a property list there");
    // Keys of someone else's making would send this host's users to them.
    const bool knowsOwn = ::stat(QFile::encodeName(program).constData(), &own) == 0;
    if (info.st_uid != 0 && info.st_uid != ::geteuid() && !(knowsOwn && info.st_uid == own.st_uid))
        return QStringLiteral("belongs to another user; give it to the owner of the program");

    QFile opened;
    static_cast<void>(opened.open(file.get(), QIODevice::ReadOnly));
    const QByteArray bytes = opened.read(sizeLimit + 1);
    if (opened.error() != QFileDevice::NoError)
        return QStringLiteral("cannot be read (%1)").arg(opened.errorString());
    return bytes.size() > sizeLimit ? oversized() : Contents(bytes);
}

Contents readResource(const QString &path)
{
    const QResource resource(path);
    if (!resource.isValid())
        return Fault();
    if (resource.uncompressedSize() > sizeLimit)
        return oversized();
    return resource.uncompressedData();
}

std::variant<Plist, Fault> parse(const QByteArray &bytes)
{
    plist_t node = nullptr;
    const auto size = static_cast<uint32_t>(bytes.size());
    if (bytes.startsWith("bplist")) {
        // The reader follows references as deep and as often as they go: looked through before.
        if (!isPlainBinaryPropertyList(bytes))
            return QStringLiteral("is a broken binary property list; check it with plutil -lint");
        plist_from_bin(bytes.constData(), size, &node);
    } else {
        const QByteArray mark = QByteArrayLiteral("\xEF\xBB\xBF");
        const QByteArray text = bytes.startsWith(mark) ? bytes.mid(mark.size()) : bytes;
        if (text.trimmed().startsWith('<'))
            plist_from_xml(text.constData(), static_cast<uint32_t>(text.size()), &node);
    }
    Plist root(node);
    if (!root)
        return QStringLiteral(
            "is no property list in XML or binary form; check it with plutil -lint");
    if (plist_get_node_type(root.get()) != PLIST_DICT)
        return QStringLiteral("holds no dictionary; put the keys into a <dict>");
    return root;
}

/// \return the list, borrowed until the next call; null where there is none or its fault is told
plist_t load(const QString &file, const Contents &contents)
{
    // What this thread read last: every request asks twice, and parsing takes longer than reading.
    struct Known {
        QByteArray bytes;
        Plist root;
    };
    static thread_local Known known;
    if (const auto *bytes = std::get_if<QByteArray>(&contents)) {
        if (known.root && *bytes == known.bytes)
            return known.root.get();
        auto parsed = parse(*bytes);
        if (auto *root = std::get_if<Plist>(&parsed)) {
            known.bytes = QByteArray(bytes->constData(), bytes->size()); // a resource may go
            known.root = std::move(*root);
            return known.root.get();
        }
        reportOnce(file, std::get<Fault>(parsed));
    } else if (const auto &fault = std::get<Fault>(contents); !fault.isEmpty()) {
        reportOnce(file, fault);
    }
    return nullptr;
}

} // namespace

std::optional<QString> infoDictionaryText(const QString &key)
{
    const QString resource = QStringLiteral(":/Info.plist");
    plist_t root = load(resource, readResource(resource));
    if (root == nullptr) {
        // Not Qt's application path: it is worked out and kept without a lock.
        const QString program = QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget();
        const QString path = QFileInfo(program).path() + QStringLiteral("/Info.plist");
        root = load(path, readFile(program, path));
    }
    if (root == nullptr)
        return std::nullopt;

    const plist_t value = plist_dict_get_item(root, key.toUtf8().constData());
    if (value == nullptr || plist_get_node_type(value) != PLIST_STRING)
        return std::nullopt;
    uint64_t length = 0;
    const char *text = plist_get_string_ptr(value, &length);
    return text ? QString::fromUtf8(text, static_cast<qsizetype>(length)) : QString();
}

} // namespace parloquin
